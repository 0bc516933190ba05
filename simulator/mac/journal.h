#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/world/elements.h"
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
    landing,     // of a write or a paste that was asked for before
    capture,     // a screenshot
    sharing,     // a stream that starts, changes or ends
    pasteboard,  // a clearing or a writing
    cover,       // a panel that comes, changes or goes
    awake,       // a hold on the display
    screen,      // the lock
    policy,      // of an application's activation, by itself
    file,        // a replaced one
    happening,   // what no client asked for
    process,     // one that joins or ends
    request,     // what a process read from its standard input
    reply,       // a line that a process wrote to its standard output
    fault,       // one that struck, or that a test has armed
    violation,   // a rule of safe input that was broken
    wait,        // of a test, that was in vain
    failure,     // of a test, or of the command that the Mac was started for
  };

  std::int64_t number = 0;  // from 1; no entry gets one twice
  Microseconds at = 0;
  Kind kind = Kind::event;
  Pid pid = 0;  // the process that did it; 0: the user, the system, or what is left of neither
  Pid target = 0;
  WindowNumber window = 0;
  std::string what = {};                      // "moved", "left-down", "give", "take", "lock" …
  std::optional<Point> point = std::nullopt;  // global points
  std::string route = {};                     // "private", "public"; empty where there is none
  std::optional<bool> landed = std::nullopt;  // of what may be refused: whether it had its effect
  std::string outcome = {};                   // why not, or what came of it
  /// What it was about, or for an event what was under its point or had the keyboard.
  std::optional<ElementName> element = std::nullopt;
  std::string text = {};                    // written, typed or pasted; or bytes that are none
  bool isValue = false;                     // `text` shows a number, a truth or a place
  std::string record = {};                  // the bytes of an event record
  std::vector<std::string> arguments = {};  // of a process that joins, from its name on
  std::vector<std::string> variables = {};  // of its environment, NAME=value, that it heeds
};

/// Of a text an entry keeps no more than this.
inline constexpr std::size_t entryTextBytesMax = 10'000;

/// The entry as one line of JSON, keys sorted, without a line feed. Times are in milliseconds.
std::string journalLine(const JournalEntry& entry);

/// The entry as one line for people: its time, the process, and what was done.
/// "  40 ms  5000000  post 41/7 moved -1,-1 private".
std::string journalText(const JournalEntry& entry);

/// The same for tests, without the process, the time relative to `start`: what was done to the Mac.
/// Empty for what changes nothing in it: captures, and what is told of processes.
std::string effectLine(const JournalEntry& entry, Microseconds start);

/// A time in milliseconds as text, with as many decimals as it needs.
std::string milliseconds(Microseconds time);

}  // namespace simulator
