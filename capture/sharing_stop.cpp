#include "capture/sharing_stop.h"

#include <algorithm>
#include <cstdint>

#include "input/held_focus.h"
#include "main/act.h"
#include "main/ending.h"
#include "main/replies.h"
#include "platform/loop.h"
#include "platform/process.h"

namespace driver {

namespace {

constexpr std::int64_t nanosecondsPerMicrosecond = 1'000;
constexpr std::int64_t releaseMicroseconds = 40'000;  // of one held focus
constexpr std::int64_t shortestMicroseconds = 50'000;

/// What is left for the last line, so that the focus that is held can still be given back in time.
std::uint32_t timeForLastLine(std::uint64_t startNanoseconds) {
  const auto spent = static_cast<std::int64_t>(loop::uptimeNanoseconds() - startNanoseconds) /
                     nanosecondsPerMicrosecond;
  const auto releases = static_cast<std::int64_t>(heldFocusCount()) * releaseMicroseconds;
  const std::int64_t left = std::int64_t{endingMicroseconds} - spent - releases;
  return static_cast<std::uint32_t>(std::max(left, shortestMicroseconds));
}

}  // namespace

void endWhenSharingStops(const std::string& description) {
  const std::uint64_t start = loop::uptimeNanoseconds();
  beginEnding();
  emitLastWithin({{"ok", false},
                  {"sharing", false},
                  {"error", "native screen sharing stopped: " + description}},
                 timeForLastLine(start));
  process::exit(1);
}

}  // namespace driver
