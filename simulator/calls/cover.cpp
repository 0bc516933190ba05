#include <algorithm>
#include <cmath>
#include <functional>

#include "simulator/calls/calls.h"
#include "simulator/drawing/canvas.h"
#include "simulator/drawing/covers.h"
#include "simulator/world/cover.h"

/// How the Mac answers what is about covers, their pictures, power and the screen lock.
namespace simulator::calls {

using driver::pack;

namespace {

/// IOKit's general error.
constexpr std::int32_t powerError = -536870212;

Answer portrait(Mac& mac, Client& client, Portrait::Kind kind, std::string name) {
  client.portraits.emplace(++mac.numbers, Portrait{kind, std::move(name)});
  return {pack(mac.numbers), 0};
}

Cover* findCover(Mac& mac, const Client& client, std::size_t number) {
  auto& covers = mac.world.covers;
  const auto found = std::find_if(covers.begin(), covers.end(), [&](const Cover& each) {
    return each.owner == client.pid && each.number == number;
  });
  return found == covers.end() ? nullptr : &*found;
}

/// Where screens are measured from; a Mac without screens has none.
Rect firstScreen(const World& world) {
  return world.displays.empty() ? Rect{} : world.displays.front().frame;
}

void note(Mac& mac, const Cover& cover, std::string what) {
  enter(mac, {.kind = JournalEntry::Kind::cover,
              .target = cover.owner,
              .window = cover.window,
              .what = std::move(what)});
}

std::string shownText(const Cover& cover) {
  std::string text = "shown";
  for (const cover::Label& label : cover.labels) text += " \"" + label.text + "\"";
  return text;
}

}  // namespace

Answer preventDisplaySleep(Mac& mac, Client& client, const Arguments& arguments) {
  if (!mac.world.displayHoldAllowed) return {pack(power::Assertion{powerError, 0}), 0};
  client.displayHolds.push_back(arguments.text(0));
  enter(mac, {.kind = JournalEntry::Kind::awake, .target = client.pid, .what = "display held"});
  return {pack(power::Assertion{0, static_cast<std::uint32_t>(++mac.numbers)}), 0};
}

// The call comes back at once; the login window shows later.
Answer lockScreen(Mac& mac, Client& client, const Arguments& /*arguments*/) {
  const Session& session = mac.world.session;
  if (!mac.comingLock && !session.locked.value_or(false)) {
    mac.comingLock = ComingLock{mac.now, mac.now + session.lockDelay, client.pid};
  }
  return {pack(std::int32_t{0}), 0};
}

Answer loadImage(Mac& mac, Client& client, const Arguments& arguments) {
  if (mac.world.images.count(arguments.text(0)) == 0) return {};
  return portrait(mac, client, Portrait::Kind::face, arguments.text(0));
}

Answer decodeImage(Mac& mac, Client& client, const Arguments& arguments) {
  const auto bytes = arguments.get<platform::Bytes>(0);
  if (!isPictureData(bytes)) return {};
  return portrait(mac, client, Portrait::Kind::photo, mac.world.user.fullName);
}

// There is one for everything; what does not exist has that of a plain document.
Answer fileIcon(Mac& mac, Client& client, const Arguments& arguments) {
  return portrait(mac, client, Portrait::Kind::icon, arguments.text(0));
}

Answer screens(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  std::vector<Rect> frames;
  for (const Display& display : mac.world.displays) {
    frames.push_back(flipped(display.frame, firstScreen(mac.world)));
  }
  return {pack(frames), 0};
}

Answer measureText(Mac& /*mac*/, Client& /*client*/, const Arguments& arguments) {
  return {pack(labelSize(arguments.text(0), arguments.get<cover::Font>(1))), 0};
}

Answer showPanel(Mac& mac, Client& client, const Arguments& arguments) {
  const auto panel = arguments.get<platform::WirePanel>(0);
  Cover cover;
  cover.owner = client.pid;
  cover.number = client.coversShown++;
  cover.window = ++mac.world.lastWindow;
  cover.frame = flipped(panel.frame, firstScreen(mac.world));
  cover.level = panel.level;
  cover.dimmingAlpha = panel.dimmingAlpha;
  for (const platform::WirePicture& picture : panel.pictures) {
    const auto portrait = client.portraits.find(picture.image);
    if (portrait == client.portraits.end()) continue;
    cover.pictures.push_back({portrait->second, picture.frame, picture.isRound});
  }
  cover.labels = panel.labels;
  note(mac, cover, shownText(cover));
  mac.world.covers.push_back(std::move(cover));
  return {pack(mac.world.covers.back().number), 0};
}

Answer setPanelLabel(Mac& mac, Client& client, const Arguments& arguments) {
  Cover* const cover = findCover(mac, client, arguments.get<std::size_t>(0));
  const auto index = arguments.get<std::size_t>(1);
  if (cover == nullptr || index >= cover->labels.size()) throw driver::MalformedDatum();
  cover->labels[index].text = arguments.text(2);
  cover->labels[index].frame = arguments.get<Rect>(3);
  note(mac, *cover, "says \"" + cover->labels[index].text + "\"");
  return {};
}

Answer placePanel(Mac& mac, Client& client, const Arguments& arguments) {
  Cover* const found = findCover(mac, client, arguments.get<std::size_t>(0));
  if (found == nullptr) throw driver::MalformedDatum();
  Cover cover = std::move(*found);
  auto& covers = mac.world.covers;
  covers.erase(covers.begin() + (found - covers.data()));
  cover.frame = flipped(arguments.get<Rect>(1), firstScreen(mac.world));
  covers.push_back(std::move(cover));
  return {};
}

Answer closePanel(Mac& mac, Client& client, const Arguments& arguments) {
  const Cover* const cover = findCover(mac, client, arguments.get<std::size_t>(0));
  if (cover == nullptr) throw driver::MalformedDatum();
  note(mac, *cover, "closed");
  mac.world.covers.erase(mac.world.covers.begin() + (cover - mac.world.covers.data()));
  return {};
}

}  // namespace simulator::calls
