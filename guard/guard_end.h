#pragma once

#include <cstdint>
#include <string_view>

#include "main/replies.h"

namespace driver {

/// How long the guard lives on after its last line, so that the screen has locked before the covers
/// go. In microseconds.
inline constexpr std::uint32_t lastMoments = 500'000;

/// Writes a line of the guard. A reader that does not take it at once goes without: the guard never
/// waits for its reader, since it must go on watching.
void emitGuardLine(const Reply& line);

/// Locks the screen, says why the guard ends, and ends the process with status 0 half a second
/// later. Only the first call locks and writes. Main flow only.
[[noreturn]] void lockAndExit(std::string_view by);

/// From now on any other exit of the process locks too, one that a framework makes for example. An
/// end that this guard has decided has locked already, or is the user's in grace.
void lockAtAnyExit();

/// What the system asks when it wants the application to terminate.
class GuardQuit {
 public:
  /// Locks and ends in place of an answer.
  [[noreturn]] static void applicationShouldTerminate() { lockAndExit("quit"); }
};

}  // namespace driver
