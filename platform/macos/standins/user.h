#pragma once

#include <optional>
#include <string>

namespace standins {

/// The user's names, none for what the system does not know.
void setUser(std::optional<std::string> full, std::optional<std::string> login);

/// The system's version, which also says what is available. At first it is the newest.
void setVersion(long major, long minor);
void setNewestVersion();

}  // namespace standins
