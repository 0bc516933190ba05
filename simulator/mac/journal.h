#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

namespace simulator {

/// One thing that was done to, or happened in, the simulated Mac. Parts that a kind has no use for
/// are left out; entries are made by naming the others: `{.kind = …, .what = …}`.
struct JournalEntry {
  /// What the entry is about. journal.cpp says what each is called.
  enum class Kind {
    event,       // one posting of one event by one route
    focus,       // an event record that gives or takes focus
    key,         // an event record of a pair that makes a window key
    input,       // an event of the session that has passed the taps, or was swallowed
    action,      // an accessibility action
    write,       // of an attribute
    capture,     // a screenshot
    sharing,     // a stream that starts, changes or ends
    pasteboard,  // a clearing or a writing
    cover,       // a panel that comes, changes or goes
    awake,       // a hold on the display
    screen,      // the lock
    policy,      // of an application's activation, by itself
    file,        // a replaced one
    happening,   // what no client asked for
  };

  Microseconds at = 0;
  Kind kind = Kind::event;
  Pid target = 0;
  WindowNumber window = 0;
  std::string what = {};                      // "moved", "left-down", "give", "take", "lock" …
  std::optional<Point> point = std::nullopt;  // global points
  std::string route = {};                     // "private", "public"; empty where there is none
  std::optional<bool> landed = std::nullopt;  // of what may be refused: whether it had its effect
  std::string outcome = {};                   // why not, or what came of it
};

/// The entry as one line of JSON, keys sorted, without a line feed. Times are in milliseconds.
std::string journalLine(const JournalEntry& entry);

/// The entry as one line for people and for tests, the time relative to `start`:
/// "  40 ms  post 41/7 moved -1,-1 private". Captures are left out: the result is empty.
std::string effectLine(const JournalEntry& entry, Microseconds start);

/// A time in milliseconds as text, with as many decimals as it needs.
std::string milliseconds(Microseconds time);

}  // namespace simulator
