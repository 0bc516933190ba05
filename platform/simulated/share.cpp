#include "platform/share.h"

#include <mutex>
#include <utility>

#include "platform/simulated/channel.h"
#include "platform/simulated/process_state.h"

namespace share {

using platform::Function;
using simulated::askOrThrow;
using simulated::state;

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

std::int64_t numberOf(const Stream& stream) { return simulated::objectOf<std::int64_t>(stream); }

/// The system's own flow, which brings the news that streams have stopped.
void bringStops() {
  for (;;) {
    const auto stop = simulated::askFor<platform::WireStop>(Function::nextStop);
    StopHandler handler;
    {
      const std::lock_guard lock(state().mutex);
      const auto found = state().stopHandlers.find(stop.stream);
      if (found == state().stopHandlers.end()) continue;
      handler = found->second;
    }
    handler(stop.description);
  }
}

void keepHandler(std::int64_t stream, StopHandler onStop) {
  const std::lock_guard lock(state().mutex);
  state().stopHandlers[stream] = std::move(onStop);
}

}  // namespace

// The content that a filter names is the simulated Mac's own at that time: nothing native is kept.
Content content(DesktopWindows desktopWindows, Shown shown) {
  auto wire = askOrThrow<platform::WireContent>(Function::shareContent, desktopWindows, shown);
  return {std::move(wire.windows), std::move(wire.displays), nullptr};
}

image::Image screenshot(const Content& /*content*/, const Filter& filter,
                        const Configuration& configuration) {
  return simulated::makeHandle<image::Image>(
      askOrThrow<std::int64_t>(Function::screenshot, wireOf(filter), configuration));
}

Stream startStream(const Content& /*content*/, const WindowFilter& filter,
                   const StreamConfiguration& configuration, const std::string& queueLabel,
                   StopHandler onStop) {
  const auto number =
      askOrThrow<std::int64_t>(Function::startStream, wireOf(filter), configuration, queueLabel);
  keepHandler(number, std::move(onStop));
  // One flow for all streams, from the first on: a run without sharing has one thread.
  if (!std::exchange(state().bringsStops, true)) {
    state().hasFlows = true;
    simulated::channel().startFlow(bringStops);
  }
  return simulated::makeHandle<Stream>(number);
}

void updateFilter(const Stream& stream, const Content& /*content*/, const WindowFilter& filter) {
  askOrThrow<driver::Datum>(Function::updateFilter, numberOf(stream), wireOf(filter));
}

void updateConfiguration(const Stream& stream, const StreamConfiguration& configuration) {
  askOrThrow<driver::Datum>(Function::updateConfiguration, numberOf(stream), configuration);
}

void stopStream(const Stream& stream) {
  // Before it stops: a stop that was asked for is no news.
  {
    const std::lock_guard lock(state().mutex);
    state().stopHandlers.erase(numberOf(stream));
  }
  askOrThrow<driver::Datum>(Function::stopStream, numberOf(stream));
}

}  // namespace share
