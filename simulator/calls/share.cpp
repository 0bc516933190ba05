#include <algorithm>

#include "simulator/calls/calls.h"
#include "simulator/drawing/digest.h"
#include "simulator/drawing/drawn_pictures.h"
#include "simulator/drawing/pictures.h"
#include "simulator/mac/recording_question.h"

namespace simulator::calls {

using driver::Datum;
using driver::pack;

namespace {

std::optional<share::Owner> ownerOf(const World& world, const Window& window) {
  const Application* application = findApplication(world, window.owner);
  if (application == nullptr) return std::nullopt;
  return share::Owner{application->pid, application->bundleIdentifier.value_or(""),
                      application->name.value_or("")};
}

const Display* findDisplay(const World& world, std::uint32_t id) {
  for (const Display& display : world.displays) {
    if (display.id == id) return &display;
  }
  return nullptr;
}

/// The windows of a filter, back to front; none when one of them is not there.
std::optional<std::vector<const Window*>> filtered(const World& world,
                                                   const std::vector<WindowNumber>& numbers) {
  std::vector<const Window*> windows;
  for (auto window = world.windows.rbegin(); window != world.windows.rend(); ++window) {
    const bool wanted = std::find(numbers.begin(), numbers.end(), window->number) != numbers.end();
    if (wanted && window->onScreen) windows.push_back(&*window);
  }
  if (windows.size() != numbers.size()) return std::nullopt;
  return windows;
}

Picture pictureWith(const World& world, const std::vector<const Window*>& windows) {
  Picture picture;
  for (const Window* window : windows) picture.windows.push_back(pictureOf(world, *window));
  return picture;
}

std::optional<Picture> windowPicture(const World& world, const platform::WireFilter& filter) {
  const auto windows = filtered(world, filter.windows);
  if (!windows || windows->empty()) return std::nullopt;
  Picture picture = pictureWith(world, *windows);
  picture.source = windows->front()->frame;
  picture.backgroundGrey = 0;
  return picture;
}

std::optional<Picture> displayPicture(const World& world, const platform::WireFilter& filter,
                                      const share::Configuration& configuration) {
  const Display* display = findDisplay(world, filter.display);
  if (display == nullptr) return std::nullopt;
  Picture picture;
  if (filter.kind == 1) {
    const auto windows = filtered(world, filter.windows);
    if (!windows) return std::nullopt;
    picture = pictureWith(world, *windows);
    picture.backgroundGrey = configuration.backgroundGrey.value_or(0);
  } else {
    picture = screenPicture(world);
    picture.pointer.reset();
  }
  picture.source = display->frame;
  if (configuration.source) {
    const Rect& part = *configuration.source;
    picture.source = {display->frame.x + part.x, display->frame.y + part.y, part.width,
                      part.height};
  }
  return picture;
}

}  // namespace

Answer thrown(const char* description) { return {pack(platform::Thrown{description, Datum()}), 0}; }

// A platform::Thrown, put together without copies.
Answer returned(Datum value) { return {driver::listOf(Datum(), std::move(value)), 0}; }

Answer shareContent(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const bool onScreenOnly = arguments.get<share::Shown>(1) == share::Shown::onScreen;
  const World& world = mac.world;
  if (!world.screenRecordingAllowed) return thrown(captureDeclined);
  platform::WireContent content;
  for (const Window& window : world.windows) {
    if ((onScreenOnly && !window.onScreen) || !window.capturable) continue;
    content.windows.push_back(
        {window.number, window.frame, window.title, window.layer, ownerOf(world, window)});
  }
  for (const Display& display : world.displays) {
    content.displays.push_back({display.id, display.frame});
  }
  return returned(pack(std::move(content)));
}

Answer screenshot(Mac& mac, Client& client, const Arguments& arguments) {
  const auto filter = arguments.get<platform::WireFilter>(0);
  const auto configuration = arguments.get<share::Configuration>(1);
  if (!allowsCapture(mac)) return thrown(captureDeclined);
  auto picture = filter.kind == 0 ? windowPicture(mac.world, filter)
                                  : displayPicture(mac.world, filter, configuration);
  if (!picture) return thrown(noSource);
  picture->width = configuration.width;
  picture->height = configuration.height;
  const WindowNumber window = filter.windows.empty() ? 0 : filter.windows.front();
  const Window* shown = findWindow(mac.world, window);
  enter(mac, {.kind = JournalEntry::Kind::capture,
              .target = shown == nullptr ? 0 : shown->owner,
              .window = window,
              .what = filter.kind == 0 ? "window" : "display"});
  client.pictures.emplace(++mac.numbers, std::move(*picture));
  return returned(pack(mac.numbers));
}

Answer pngOfImage(Mac& /*mac*/, Client& client, const Arguments& arguments) {
  const auto picture = client.pictures.find(arguments.get<std::int64_t>(0));
  if (picture == client.pictures.end()) return {};
  const auto png = drawnPictures().png(picture->second);
  return {pack(png ? std::optional(*png) : std::nullopt), 0};
}

// Pictures that are only compared are not drawn: equal digests stand for equal pixels.
Answer pixelsOfImage(Mac& /*mac*/, Client& client, const Arguments& arguments) {
  const auto picture = client.pictures.find(arguments.get<std::int64_t>(0));
  if (picture == client.pictures.end()) return {};
  return {pack(std::optional(std::to_string(digest(picture->second)))), 0};
}

}  // namespace simulator::calls
