#pragma once

#include <optional>
#include <string>

namespace driver {

/// True when a window of this title belongs to the window scope: when there is no scope, or when
/// one of the pieces that " — " divides the title into equals it, case and outer blanks aside. A
/// missing title is an empty one.
bool inScope(const std::optional<std::string>& title);

}  // namespace driver
