#include "capture/window_image.h"

#include <algorithm>

#include "base/geometry.h"
#include "main/ending.h"
#include "platform/image.h"
#include "platform/share.h"

namespace driver {

namespace {

constexpr std::uint64_t longestSide = 16'384;  // the longest of a picture on this hardware

}  // namespace

std::uint64_t pixelCount(double side) {
  if (side >= static_cast<double>(longestSide)) return longestSide;
  return side >= 1 ? static_cast<std::uint64_t>(side) : 1;
}

std::optional<platform::Bytes> windowImage(platform::WindowNumber number) {
  try {
    const share::Content content =
        share::content(share::DesktopWindows::included, share::Shown::onScreen);
    const auto window =
        std::find_if(content.windows.begin(), content.windows.end(),
                     [&](const share::Window& candidate) { return candidate.number == number; });
    if (window == content.windows.end() || !isFinite(window->frame)) return std::nullopt;
    // At half size: a quarter of the pixels is enough to see a change by.
    share::Configuration configuration;
    configuration.width = pixelCount(window->frame.width / 2);
    configuration.height = pixelCount(window->frame.height / 2);
    holdBackIfEnding();
    return image::pixels(share::screenshot(content, share::WindowFilter{number}, configuration));
  } catch (const platform::PlatformError&) {
    return std::nullopt;
  }
}

}  // namespace driver
