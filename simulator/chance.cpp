#include "simulator/chance.h"

#include <array>
#include <string_view>

namespace simulator {

namespace {

/// The calls of a part of the system, by the beginning of their names, and between what times they
/// are answered.
struct Span {
  std::string_view beginning;
  Microseconds least;
  Microseconds most;
};

/// Of two that fit, the first counts.
constexpr std::array spans = {
    Span{"ax.", 20, 400},
    Span{"private.ax-window", 20, 400},
    Span{"private.", 5, 60},
    Span{"quartz.post", 5, 60},
    Span{"quartz.seconds", 5, 60},
    Span{"windowserver.", 40, 900},
    Span{"workspace.", 10, 250},
    Span{"share.", 800, 30'000},
    Span{"pasteboard.", 20, 500},
    Span{"tap.", 5, 80},
    Span{"cover.", 30, 1'500},
    Span{"image.", 50, 4'000},
    Span{"streams.replace-file", 100, 2'000},
    Span{"streams.list-directory", 20, 300},
    Span{"process.tool-output", 1'000, 20'000},
};

/// One answer in so many takes so many times as long.
constexpr std::size_t slowOneIn = 64;
constexpr Microseconds slowFactor = 8;

}  // namespace

Microseconds chanceDelay(Random& random, platform::Function function) {
  const std::string_view name = platform::nameOf(function);
  for (const Span& span : spans) {
    if (!name.starts_with(span.beginning)) continue;
    const Microseconds time = random.between(span.least, span.most);
    return random.oneIn(slowOneIn) ? time * slowFactor : time;
  }
  return 0;
}

}  // namespace simulator
