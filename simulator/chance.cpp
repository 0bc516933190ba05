#include "simulator/chance.h"

#include <array>
#include <string_view>

namespace simulator {

namespace {

/// The calls of a part of the system, by the beginning of their names, and between what times they
/// are answered.
struct CallTimes {
  std::string_view beginning;
  Microseconds least;
  Microseconds most;
};

/// Of two that fit, the first counts.
constexpr std::array callTimes = {
    CallTimes{"ax.", 20, 400},
    CallTimes{"private.ax-window", 20, 400},
    CallTimes{"private.", 5, 60},
    CallTimes{"quartz.post", 5, 60},
    CallTimes{"quartz.seconds", 5, 60},
    CallTimes{"windowserver.", 40, 900},
    CallTimes{"workspace.", 10, 250},
    CallTimes{"share.", 800, 30'000},
    CallTimes{"pasteboard.", 20, 500},
    CallTimes{"tap.", 5, 80},
    CallTimes{"cover.", 30, 1'500},
    CallTimes{"image.", 50, 4'000},
    CallTimes{"streams.replace-file", 100, 2'000},
    CallTimes{"streams.list-directory", 20, 300},
    CallTimes{"process.tool-output", 1'000, 20'000},
};

/// One answer in so many takes so many times as long.
constexpr std::size_t slowOneIn = 64;
constexpr Microseconds slowFactor = 8;

}  // namespace

Microseconds chanceDelay(Random& random, platform::Function function) {
  const std::string_view name = platform::nameOf(function);
  for (const CallTimes& times : callTimes) {
    if (!name.starts_with(times.beginning)) continue;
    const Microseconds time = random.between(times.least, times.most);
    return random.oneIn(slowOneIn) ? time * slowFactor : time;
  }
  return 0;
}

}  // namespace simulator
