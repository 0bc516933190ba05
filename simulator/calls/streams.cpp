#include <algorithm>

#include "simulator/calls/calls.h"
#include "simulator/mac/recording_question.h"
#include "simulator/mac/sharing_streams.h"

/// How the Mac answers what shares a window by a stream.
namespace simulator::calls {

using driver::Datum;
using driver::pack;

namespace {

constexpr const char* notStoppable =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3808 \"Attempt to stop a "
    "stream that is not running\"";
constexpr const char* notFilterable =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3809 \"Attempt to update "
    "the "
    "filter of a stream that is not running\"";
constexpr const char* notConfigurable =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3810 \"Attempt to configure "
    "a stream that is not running\"";
constexpr const char* invalidParameter =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3812 \"Invalid "
    "parameter\"";

constexpr process::Version childWindowsSince{14, 2};
constexpr std::int64_t queueDepthMax = 8;

/// The one window of the filter, if it can be shared.
const Window* sourceOf(const World& world, const platform::WireFilter& filter) {
  if (filter.kind != 0 || filter.windows.size() != 1) return nullptr;
  const Window* window = findWindow(world, filter.windows.front());
  return window != nullptr && window->capturable ? window : nullptr;
}

/// Whether this version of the system takes the configuration.
bool isValid(const World& world, const share::StreamConfiguration& configuration) {
  if (configuration.includesChildWindows && world.system.version < childWindowsSince) return false;
  return configuration.width > 0 && configuration.height > 0 &&
         configuration.frameIntervalSeconds >= 0 && configuration.queueDepth > 0 &&
         configuration.queueDepth <= queueDepthMax;
}

void note(Mac& mac, const Sharing& sharing, const std::string& what, const std::string& outcome) {
  enter(mac, {.kind = JournalEntry::Kind::sharing,
              .target = sharing.owner,
              .window = sharing.window,
              .what = what,
              .outcome = outcome});
}

std::string describe(const share::StreamConfiguration& configuration) {
  std::string text =
      std::to_string(configuration.width) + "x" + std::to_string(configuration.height);
  if (configuration.includesChildWindows) text += " with child windows";
  return text + " as " + configuration.name;
}

/// The client's stream of the number that the call begins with; null when it does not run.
Sharing* streamOf(Mac& mac, const Client& client, const Arguments& arguments) {
  const auto number = arguments.get<std::int64_t>(0);
  auto& sharings = mac.world.sharings;
  const auto found = std::find_if(sharings.begin(), sharings.end(), [&](const Sharing& each) {
    return each.stream == number && each.client == client.pid;
  });
  return found == sharings.end() ? nullptr : &*found;
}

}  // namespace

Answer startStream(Mac& mac, Client& client, const Arguments& arguments) {
  const auto filter = arguments.get<platform::WireFilter>(0);
  const auto configuration = arguments.get<share::StreamConfiguration>(1);
  if (!allowsCapture(mac)) return thrown(captureDeclined);
  const Window* window = sourceOf(mac.world, filter);
  if (window == nullptr) return thrown(noSource);
  if (!isValid(mac.world, configuration)) return thrown(invalidParameter);
  mac.world.sharings.push_back(
      {++mac.numbers, client.pid, window->number, window->owner, configuration, mac.now});
  note(mac, mac.world.sharings.back(), "start " + describe(configuration), "");
  return returned(pack(mac.numbers));
}

Answer updateFilter(Mac& mac, Client& client, const Arguments& arguments) {
  Sharing* sharing = streamOf(mac, client, arguments);
  if (sharing == nullptr) return thrown(notFilterable);
  const Window* window = sourceOf(mac.world, arguments.get<platform::WireFilter>(1));
  if (window == nullptr) return thrown(noSource);
  shareInPlace(*sharing, *window, mac.now);
  note(mac, *sharing, "move here", "");
  return returned(Datum());
}

Answer updateConfiguration(Mac& mac, Client& client, const Arguments& arguments) {
  Sharing* sharing = streamOf(mac, client, arguments);
  if (sharing == nullptr) return thrown(notConfigurable);
  const auto configuration = arguments.get<share::StreamConfiguration>(1);
  if (!isValid(mac.world, configuration)) return thrown(invalidParameter);
  sharing->configuration = configuration;
  note(mac, *sharing, "configure " + describe(configuration), "");
  return returned(Datum());
}

Answer stopStream(Mac& mac, Client& client, const Arguments& arguments) {
  Sharing* sharing = streamOf(mac, client, arguments);
  if (sharing == nullptr) return thrown(notStoppable);
  note(mac, *sharing, "stop", std::to_string(framesOf(*sharing, mac.now)) + " frames");
  mac.world.sharings.erase(mac.world.sharings.begin() + (sharing - mac.world.sharings.data()));
  return returned(Datum());
}

Answer nextStop(Mac& /*mac*/, Client& client, const Arguments& /*arguments*/) {
  if (client.stops.empty()) return {Datum(), 0, true, std::nullopt};
  const platform::WireStop stop = client.stops.front();
  client.stops.pop_front();
  return {pack(stop), 0};
}

}  // namespace simulator::calls
