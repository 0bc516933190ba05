#pragma once

#include <string_view>

#include "simulator/text/error.h"
#include "simulator/world/world.h"

/// Worlds as text.
namespace simulator {

/// The world a text describes. Throws WorldError.
World parseWorld(std::string_view text);

/// One line of what may happen, as in a script or from outside: "lock", "quit Notes",
/// "user click 10,20" … Applications are named by name or "pid:N". Throws WorldError with line 1.
Happening parseHappening(std::string_view text, const World& world);

/// A time such as "100ms", "2s", "1.5s" or "250us". Throws WorldError with line 1, which says that
/// `owner` needs one.
Microseconds parseTime(std::string_view text, const char* owner);

}  // namespace simulator
