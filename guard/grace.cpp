#include "guard/grace.h"

#include <algorithm>
#include <cmath>

#include "main/globals.h"
#include "platform/loop.h"

namespace driver {

namespace {

constexpr double nanosecondsPerSecond = 1e9;
constexpr double secondsMax = 1e12;  // thirty thousand years, and a whole number as a double

double awakeSeconds() {
  return static_cast<double>(loop::uptimeNanoseconds()) / nanosecondsPerSecond;
}

}  // namespace

void startGrace() {
  const double seconds = globals().guardGrace;
  if (!(seconds > 0)) return;
  globals().guardGraceStart = loop::secondsSince1970();
  globals().guardGraceUntil = globals().guardGraceStart + seconds;
  globals().guardGraceStartAwake = awakeSeconds();
}

bool hasGrace() { return globals().guardGraceUntil.has_value(); }

// The date alone could be set back, and the time awake stands still while the machine sleeps. What
// has passed is not told from what is left: of a very long grace that is not exact to the second.
GraceTime graceTime() {
  const double date = loop::secondsSince1970();
  const double awake = awakeSeconds() - globals().guardGraceStartAwake;
  return {std::max(date - globals().guardGraceStart, awake),
          std::min(*globals().guardGraceUntil - date, globals().guardGrace - awake)};
}

std::int64_t graceSecondsLeft() { return hasGrace() ? secondsRoundedUp(graceTime().left) : 0; }

std::int64_t secondsRoundedUp(double seconds) {
  if (!(seconds > 0)) return 0;
  return static_cast<std::int64_t>(std::ceil(std::min(seconds, secondsMax)));
}

// What is left of a grace behind its last whole second has no step of its own: the last text stays.
std::int64_t countdownSteps(double seconds) {
  return std::max<std::int64_t>(static_cast<std::int64_t>(std::min(seconds, secondsMax)), 1);
}

}  // namespace driver
