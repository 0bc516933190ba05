#include "capture/stream_configuration.h"

#include <algorithm>
#include <cstdint>

#include "base/geometry.h"

namespace driver {

namespace {

constexpr double longestSide = 640;  // pixels
constexpr double shortestSide = 2;   // pixels
constexpr process::Version childWindowsSince{14, 2};

std::uint64_t scaledSide(double side, double scale) {
  return static_cast<std::uint64_t>(std::max(side * scale, shortestSide));
}

}  // namespace

share::StreamConfiguration streamConfiguration(const platform::Rect& frame,
                                               process::Version version) {
  const platform::Rect known = isFinite(frame) ? frame : platform::Rect{};
  const double longer = std::max(known.width, known.height);
  const double scale = longer <= 1 ? 1 : std::min(longestSide / longer, 1.0);

  share::StreamConfiguration configuration;
  configuration.width = scaledSide(known.width, scale);
  configuration.height = scaledSide(known.height, scale);
  configuration.frameIntervalSeconds = 1;
  configuration.queueDepth = 3;
  configuration.name = sharingName;
  configuration.includesChildWindows = version >= childWindowsSince;
  return configuration;
}

}  // namespace driver
