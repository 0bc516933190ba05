#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "platform/event_tap.h"
#include "platform/types.h"

namespace simulator {

/// One event of the login session: of the user's devices, or posted into it.
struct InputEvent {
  tap::Event event;  // as taps see it
  std::string text;  // of a key: what it types; empty: what the layout says
  driver::Point scrolledLines;
  std::int64_t since = 0;  // when it came, in microseconds of virtual time
};

/// A tap on the session's events.
struct Tap {
  std::int64_t number = 0;
  platform::Pid owner = 0;
  bool filters = false;
  bool enabled = false;
  std::uint64_t mask = 0;
  bool isValid = true;  // its port is; the system tells nobody when it is not any more
  bool isDead = false;  // its owner has lost the permission: it hears nothing, and one that filters
                        // holds what comes to it until its owner has gone
};

/// The taps, and the events that are on their way through them. taps.h works it.
struct TapLine {
  /// An event that waits for what a tap says of it.
  struct Hold {
    std::int64_t tap = 0;
    std::int64_t serial = 0;
    /// In microseconds of virtual time; none: the system has disabled the tap, and yet it holds.
    std::optional<std::int64_t> deadline;
  };

  std::vector<Tap> taps;           // from the head to the tail
  std::deque<InputEvent> waiting;  // oldest first; the first is on its way
  std::deque<std::int64_t> ahead;  // the taps that the first has not come to yet
  bool underWay = false;           // the first has been told to a tap, or passed by all
  std::optional<Hold> hold;        // of the first
  std::int64_t lastSerial = 0;
};

}  // namespace simulator
