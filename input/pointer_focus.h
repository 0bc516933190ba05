#pragma once

#include <cstdint>

#include "input/target_window.h"
#include "platform/types.h"

namespace driver {

enum class PointerFocus {
  notNeeded,  // the target is in front, or a capture session holds its focus
  given,
  unavailable,
};

/// Gives the window input focus for one pointer input where that is needed. After `given` the
/// caller calls `endPointerFocus`; should the run fail before, focus is taken back all the same.
PointerFocus beginPointerFocus(platform::Pid pid, const TargetWindow& window);

/// After `given`: pauses, then takes focus back, unless it has come to be held or the target has
/// come to the front. Otherwise nothing.
void endPointerFocus(PointerFocus focus, std::uint32_t pauseMicroseconds);

}  // namespace driver
