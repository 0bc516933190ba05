#include "simulator/input/happenings.h"

#include <algorithm>
#include <utility>

#include "simulator/input/taps.h"

namespace simulator {

namespace {

void queue(Client& client, platform::ItemKind kind, std::int64_t number) {
  client.items.push_back({kind, number, 0, {}});
}

/// How far down a panel comes to lie when there is no display to move it to.
constexpr double strayingPoints = 25;

void moveCoversFrom(World& world, const Rect& gone) {
  for (Cover& cover : world.covers) {
    if (cover.frame != gone) continue;
    if (world.displays.empty()) {
      cover.frame.y += strayingPoints;
    } else {
      cover.frame.x = world.displays[0].frame.x;
      cover.frame.y = world.displays[0].frame.y;
    }
  }
}

void tellOfScreens(Mac& mac) {
  mac.screensChanged = mac.now;
  tellProcesses(mac, platform::ItemKind::screenChange);
}

}  // namespace

std::vector<Client*> living(Mac& mac) {
  std::vector<Client*> found;
  for (const auto& client : mac.clients) {
    if (client && !client->exited) found.push_back(client.get());
  }
  return found;
}

void setHanging(Mac& mac, Pid pid, bool hangs) {
  if (Application* application = findApplication(mac.world, pid)) application->hangs = hangs;
}

void signalProcess(const Mac& mac, Client& client, int number) {
  if (client.endingSignals.count(number) != 0) {
    client.told = ToldToEnd{number, mac.now};
    client.endingSignals.clear();  // the next one ends it at once
  } else if (client.handledSignals.count(number) != 0) {
    queue(client, platform::ItemKind::signal, number);
  } else {
    client.diedBySignal = number;
  }
}

void signalProcesses(Mac& mac, int number) {
  for (Client* client : living(mac)) signalProcess(mac, *client, number);
}

void tellProcesses(Mac& mac, platform::ItemKind kind) {
  for (Client* client : living(mac)) queue(*client, kind, 0);
}

void withdrawAccessibility(Mac& mac) {
  mac.world.accessibilityAllowed = false;
  withdrawTaps(mac);
}

void removeDisplays(Mac& mac) {
  const std::vector<Display> gone = std::exchange(mac.world.displays, {});
  for (const Display& display : gone) moveCoversFrom(mac.world, display.frame);
  tellOfScreens(mac);
}

void connectDisplay(Mac& mac, const Display& display) {
  auto& displays = mac.world.displays;
  const auto known = std::find_if(displays.begin(), displays.end(),
                                  [&](const Display& each) { return each.id == display.id; });
  if (known == displays.end()) {
    displays.push_back(display);
  } else {
    *known = display;
  }
  tellOfScreens(mac);
}

void disconnectDisplay(Mac& mac, std::uint32_t number) {
  auto& displays = mac.world.displays;
  const auto gone = std::find_if(displays.begin(), displays.end(),
                                 [&](const Display& each) { return each.id == number; });
  if (gone != displays.end()) {
    const Rect frame = gone->frame;
    displays.erase(gone);
    moveCoversFrom(mac.world, frame);
  }
  tellOfScreens(mac);
}

void replugDisplay(Mac& mac, std::uint32_t number) {
  const std::vector<Display> before = mac.world.displays;
  disconnectDisplay(mac, number);
  mac.world.displays = before;
  tellOfScreens(mac);
}

}  // namespace simulator
