#include "platform/share.h"

#include "platform/simulated/channel.h"

namespace share {

using platform::Function;
using simulated::askOrThrow;

namespace {

platform::WireFilter wireOf(const Filter& filter) {
  platform::WireFilter wire;
  wire.kind = static_cast<std::int32_t>(filter.index());
  if (const auto* window = std::get_if<WindowFilter>(&filter)) {
    wire.windows = {window->window};
  } else if (const auto* including = std::get_if<IncludingFilter>(&filter)) {
    wire.display = including->display;
    wire.windows = including->windows;
  } else {
    wire.display = std::get<DisplayFilter>(filter).display;
  }
  return wire;
}

}  // namespace

Content content(DesktopWindows desktopWindows) {
  auto wire = askOrThrow<platform::WireContent>(Function::shareContent, desktopWindows);
  return {std::move(wire.windows), std::move(wire.displays), nullptr};
}

image::Image screenshot(const Content& /*content*/, const Filter& filter,
                        const Configuration& configuration) {
  return simulated::makeHandle<image::Image>(
      askOrThrow<std::int64_t>(Function::screenshot, wireOf(filter), configuration));
}

}  // namespace share
