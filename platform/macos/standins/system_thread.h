#pragma once

#include <cstdint>
#include <functional>

/// What the system does meanwhile, on threads of its own, in Dispatch's time. Time passes when
/// somebody waits: then the system does what is due, while who waits goes on as soon as it may.
namespace standins {

/// Has the system do something after this time.
void later(std::uint64_t nanoseconds, std::function<void()> work);

/// How a wait has ended that nobody answered in time.
enum class LateAnswer {
  none,
  /// The system does the next thing that is due when the wait has just ended.
  justTooLate,
  /// It does so while the one who waited goes on: which of them is first, nobody knows.
  atTheSameTime,
};
void setLateAnswer(LateAnswer answer);

/// Waits until the system has done what it is doing, and then the next thing, whenever that is due.
/// False when there is none.
bool letSystemDoNext();

/// Has the system begin the next thing, which must be there, and does not wait for it.
void beginNext();

/// Waits until the system has done what it is doing.
void letSystemFinish();

/// Waits until `isOver` or the deadline is reached, as time passes. Returns what `isOver` says at
/// the end. It is asked while nothing is signalled; what changes it calls `signal`.
bool waitForSystem(std::uint64_t deadline, const std::function<bool()>& isOver);

/// Carries out what changes the answer of a wait's `isOver`.
void signal(const std::function<void()>& change);

}  // namespace standins
