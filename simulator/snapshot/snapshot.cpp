#include "simulator/snapshot/snapshot.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "simulator/departure.h"
#include "simulator/rules/left_behind.h"
#include "simulator/snapshot/world_text.h"
#include "simulator/text/words.h"

namespace simulator {

namespace {

bool isAlive(const std::unique_ptr<Client>& client) { return client && !client->left; }

/// The Mac as it would be without its processes, and without what it tells of the past. The names
/// are those of all its members: a new one belongs here, or is named as one that is of the past.
Mac withoutProcesses(const Mac& mac) {
  const auto& [world, now, journal, numbers, clients, tapLine, comingLock, screensChanged, entries,
               lastNews, killed, arrived] = mac;
  Mac copy{world, now, {}, numbers, {}};
  copy.tapLine = tapLine;
  copy.comingLock = comingLock;
  copy.screensChanged = screensChanged;
  copy.killed = killed;
  for (const auto& client : clients) {
    copy.clients.push_back(client ? std::make_unique<Client>(*client) : nullptr);
  }
  for (const auto& client : copy.clients) {
    if (!isAlive(client)) continue;
    client->left = true;
    endWithProcess(copy, *client);
    if (holdsAnything(copy, client->pid)) copy.killed.insert(client->pid);
  }
  copy.lastNews = lastNews;  // that they go is none
  return copy;
}

/// What has happened for the last time is no line any more. The others keep their order.
void keepComing(World& world, std::size_t scripted) {
  auto& script = world.script;
  script.erase(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(scripted));
  std::vector<Scripted*> ordered;
  for (Scripted& each : script) ordered.push_back(&each);
  std::stable_sort(ordered.begin(), ordered.end(),
                   [](const Scripted* a, const Scripted* b) { return a->place < b->place; });
  for (std::size_t i = 0; i < ordered.size(); ++i) ordered[i]->place = i;
}

/// Of an element that has gone only its window is asked for, by what it has still to do.
void forgetGone(World& world) {
  for (Application& application : world.applications) {
    for (Element& element : application.elements) {
      if (!element.removed) continue;
      const bool isAwaited =
          std::any_of(world.due.begin(), world.due.end(), [&](const DueReaction& each) {
            return each.pid == application.pid && each.element == element.id;
          });
      Element gone;
      gone.id = element.id;
      gone.window = isAwaited ? element.window : 0;
      gone.removed = true;
      application.habits.erase(element.id);
      element = std::move(gone);
    }
  }
}

std::string leftOut(const Client& client) {
  std::string text = "# Process " + std::to_string(client.pid) + " is left out:";
  for (const std::string& each : shownArguments(client)) text += " " + quotedWord(each);
  return text + "\n";
}

}  // namespace

World presentWorld(const Desktop& desktop) {
  Mac mac = withoutProcesses(desktop.mac());
  World world = std::move(mac.world);
  Resumption& with = world.resumption.emplace();
  with.processes = mac.clients.size();
  with.numbers = mac.numbers;
  with.lastSerial = mac.tapLine.lastSerial;
  with.lastNews = mac.lastNews;
  with.comingLock = mac.comingLock;
  with.screensChanged = mac.screensChanged;
  with.killed = mac.killed;
  with.chance = desktop.chance();
  for (const ArmedFault& each : desktop.faults()) {
    if (!each.isSpent()) with.faults.push_back({faultText(each.fault), each.counted});
  }
  world.present = mac.now;
  keepComing(world, desktop.scripted());
  forgetGone(world);
  return world;
}

std::string snapshotText(const Desktop& desktop) {
  std::string text = "# A Mac that has run before, as `simulated-mac snapshot` wrote it.\n";
  for (const auto& client : desktop.mac().clients) {
    if (isAlive(client)) text += leftOut(*client);
  }
  return text + worldText(presentWorld(desktop));
}

}  // namespace simulator
