#pragma once

#include <optional>
#include <string>

namespace standins {

/// The user's names, none for what the system does not know.
void setUser(std::optional<std::string> full, std::optional<std::string> login);

/// The system's version.
void setVersion(long major, long minor);

}  // namespace standins
