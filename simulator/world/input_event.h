#pragma once

#include <string>

#include "base/geometry.h"
#include "platform/event_tap.h"

namespace simulator {

/// One event of the login session: of the user's devices, or posted into it.
struct InputEvent {
  tap::Event event;  // as taps see it
  std::string text;  // of a key: what it types; empty: what the layout says
  driver::Point scrolledLines;
};

}  // namespace simulator
