#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

namespace simulator {

/// One thing that was done to, or happened in, the simulated Mac.
struct JournalEntry {
  Microseconds at = 0;
  /// "event" (one posting of one event by one route), "focus", "key" (event records), "write" (of
  /// an attribute), "capture", "file", "happening", "refused" (a malformed record).
  std::string kind;
  Pid target = 0;
  WindowNumber window = 0;
  std::string what;            // "moved", "left-down", "give", "take", "lock" …
  std::optional<Point> point;  // global points
  std::string route;           // "private", "public"; empty where there is none
  std::optional<bool> landed;  // of events and records
  std::string outcome;         // why not, or what came of it
};

/// The entry as one line of JSON, keys sorted, without a line feed. Times are in milliseconds.
std::string journalLine(const JournalEntry& entry);

/// The entry as one line for people and for tests, the time relative to `start`:
/// "  40 ms  post 41/7 moved -1,-1 private". Captures are left out: the result is empty.
std::string effectLine(const JournalEntry& entry, Microseconds start);

/// A time in milliseconds as text, with as many decimals as it needs.
std::string milliseconds(Microseconds time);

}  // namespace simulator
