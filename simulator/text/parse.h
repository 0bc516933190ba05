#pragma once

#include <string_view>
#include <vector>

#include "simulator/text/error.h"
#include "simulator/text/gathering.h"
#include "simulator/world/world.h"

/// Worlds as text.
namespace simulator {

/// What a text says, as far as it can be read, and all that is wrong with it, in the order of its
/// lines; what names something that is not there comes last.
struct WorldReading {
  World world;
  std::vector<Complaint> errors;
  std::vector<Complaint> warnings;  // only where they are asked for
};
enum class Warnings { no, yes };
WorldReading readWorld(std::string_view text, const WorldFiles& files = {},
                       Warnings warnings = Warnings::no);

/// The world a text describes. Throws the first error.
World parseWorld(std::string_view text, const WorldFiles& files = {});

/// One line of what may happen, as in a script or from outside: "lock", "quit Notes",
/// "user click 10,20" … Applications are named by name or "pid:N". What it is about must be there,
/// but in a world that has run before it may have gone. Throws WorldError with line 1.
Happening parseHappening(std::string_view text, const World& world);

/// A time such as "100ms", "2s", "1.5s" or "250us". Throws WorldError with line 1, which says that
/// `owner` needs one.
Microseconds parseTime(std::string_view text, const char* owner);

}  // namespace simulator
