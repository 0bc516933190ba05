#include "simulator/input/happenings.h"

#include <algorithm>

namespace simulator {

namespace {

void queue(Client& client, platform::ItemKind kind, std::int64_t number) {
  client.items.push_back({kind, number, 0, {}});
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

void signalProcesses(Mac& mac, int number) {
  for (Client* client : living(mac)) {
    if (client->endingSignals.count(number) != 0) {
      client->told = ToldToEnd{number, mac.now};
      client->endingSignals.clear();  // the next one ends it at once
    } else if (client->handledSignals.count(number) != 0) {
      queue(*client, platform::ItemKind::signal, number);
    } else {
      client->diedBySignal = number;
    }
  }
}

void tellProcesses(Mac& mac, platform::ItemKind kind) {
  for (Client* client : living(mac)) queue(*client, kind, 0);
}

void removeDisplays(Mac& mac) {
  mac.world.displays.clear();
  tellProcesses(mac, platform::ItemKind::screenChange);
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
  tellProcesses(mac, platform::ItemKind::screenChange);
}

void disconnectDisplay(Mac& mac, std::uint32_t number) {
  std::erase_if(mac.world.displays, [&](const Display& each) { return each.id == number; });
  tellProcesses(mac, platform::ItemKind::screenChange);
}

}  // namespace simulator
