#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/companion/waiting.h"
#include "simulator/desktop.h"
#include "simulator/scheduler.h"

namespace companion {

using simulator::Desktop;
using simulator::Microseconds;
using simulator::Scheduler;

/// Why the clock of a Mac cannot be told anything.
inline constexpr const char* notVirtual =
    "this Mac runs in real time; only one started with --virtual can be advanced";

/// What a command to the Mac gives.
struct ControlAnswer {
  bool ok = true;
  std::vector<std::string>
      lines;  // for standard output; for "screenshot" a picture, for "snapshot" a world
  Microseconds delay = 0;         // after which the answer is due
  std::optional<Wait> wait = {};  // in place of all that: what is to come before the answer
};

/// The answer to `wait`, which began at `since` and ends now. A wait in vain is in the journal.
ControlAnswer answerTo(Desktop& desktop, const Wait& wait, bool hasCome, Microseconds since);

/// A test, or the command that a Mac was started for, has failed: the journal says so.
void tellOfFailure(Desktop& desktop, std::string text);

/// Carries out one command to the Mac, given as its words: "journal", "fault" and its text, a
/// happening, and so on, as docs/SIMULATED_MAC.md lists them. What is wrong with a command is its
/// answer.
ControlAnswer control(Desktop& desktop, Scheduler::Time time,
                      const std::vector<std::string>& words);

}  // namespace companion
