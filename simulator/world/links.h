#pragma once

#include <string>
#include <string_view>

#include "simulator/world/user_state.h"

namespace simulator {

/// The absolute path with the symbolic links in it resolved, and "." and ".." with them. A circle
/// of links is left as it is.
std::string resolved(const System& system, std::string_view path);

}  // namespace simulator
