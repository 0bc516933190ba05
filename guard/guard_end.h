#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The ways in which a guard ends. Whoever ends it locks the screen first, but for a return while
/// grace lasts, and leaves the covers for half a second, until the login window shows.
namespace driver {

/// The user is back: locks the screen, says so, and ends the process soon, while the main flow goes
/// on. From the tap's callback; up to the lock nothing is allocated and nobody is asked.
void endAtReturn();

/// The user is back while grace lasts: ends the process soon, without a lock.
void endInGrace();

/// Locks the screen, says why the guard ends, and ends the process with status 0 half a second
/// later. Only the first call locks and writes. Main flow only.
[[noreturn]] void lockAndExit(std::string_view by);

/// From now on any other exit of the process locks too, one that a framework makes for example. An
/// end that this guard has decided has locked already, or is the user's in grace.
void lockAtAnyExit();

/// Locks as a process does that dies of a signal.
void lockInLastAct();

/// How long the main flow has for the questions that it asks in a round.
inline constexpr std::uint32_t questionsMicroseconds = 1'100'000;

/// By when it must be back from its next round: it begins one each second. So long it also has for
/// its start.
inline constexpr std::uint32_t roundMicroseconds = 1'000'000 + questionsMicroseconds;

/// For a flow of its own: waits until the main flow does not come back from one of its rounds, the
/// first of which has a time limit of its own.
void awaitStuckMainFlow(std::uint32_t firstMicroseconds);

/// Locks and ends the process in the place of a main flow that is stuck. Comes back when somebody
/// else is ending it.
void endInPlaceOfMainFlow();

/// Says that the guard fails, in the place of such a main flow, and ends the process with status 1.
[[noreturn]] void failInPlaceOfMainFlow(const std::string& message);

}  // namespace driver
