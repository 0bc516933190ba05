#pragma once

#include <cstdint>

/// The time in which the user may come back without the screen being locked.
namespace driver {

/// Grace begins now, if this run has any.
void startGrace();

/// True once grace has begun, whether it still lasts or not.
bool hasGrace();

/// Seconds of grace: those that have gone by, and those that are left, 0 or less when it has run
/// out.
struct GraceTime {
  double passed = 0;
  double left = 0;
};

/// Grace has begun. It goes by the date and by the time the machine has been awake, whichever
/// leaves less: neither a clock that is set back nor a machine that has slept makes it longer.
GraceTime graceTime();

/// The seconds that are left, rounded up; 0 when it has run out or has never begun.
std::int64_t graceSecondsLeft();

/// Seconds rounded up to whole ones; 0 for what is not above 0. Cut off where no clock goes.
std::int64_t secondsRoundedUp(double seconds);

/// How often the countdown of a grace of so many seconds moves on: once for each of its whole
/// seconds, and once at least.
std::int64_t countdownSteps(double seconds);

}  // namespace driver
