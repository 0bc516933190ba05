#include "simulator/mac/sharing_streams.h"

#include <algorithm>

namespace simulator {

namespace {

void note(Mac& mac, const Sharing& sharing, const char* what) {
  enter(mac, {.kind = JournalEntry::Kind::sharing,
              .target = sharing.owner,
              .window = sharing.window,
              .what = what,
              .outcome = std::to_string(framesOf(sharing, mac.now)) + " frames"});
}

Client* clientOf(Mac& mac, Pid pid) {
  const auto client = std::find_if(mac.clients.begin(), mac.clients.end(),
                                   [&](const auto& each) { return each && each->pid == pid; });
  return client == mac.clients.end() ? nullptr : client->get();
}

/// The system stops the streams that `isMeant` says, and tells their processes why.
template <class Predicate>
void stopThose(Mac& mac, Predicate isMeant, const std::string& description) {
  auto& sharings = mac.world.sharings;
  for (auto sharing = sharings.begin(); sharing != sharings.end();) {
    if (!isMeant(*sharing)) {
      ++sharing;
      continue;
    }
    note(mac, *sharing, "stopped by the system");
    if (Client* client = clientOf(mac, sharing->client)) {
      client->stops.push_back({sharing->stream, description});
    }
    sharing = sharings.erase(sharing);
  }
}

void makeInactive(Mac& mac, Sharing& sharing) {
  note(mac, sharing, "inactive without its window");
  sharing.earlier = framesOf(sharing, mac.now);
  sharing.isActive = false;
}

}  // namespace

std::int64_t framesOf(const Sharing& sharing, Microseconds now) {
  if (!sharing.isActive) return sharing.earlier;
  const Microseconds interval =
      std::max<std::int64_t>(sharing.configuration.frameIntervalSeconds, 1) * microsecondsPerSecond;
  return sharing.earlier + (now - sharing.since) / interval + 1;
}

void shareInPlace(Sharing& sharing, const Window& window, Microseconds now) {
  sharing.window = window.number;
  sharing.owner = window.owner;
  if (!sharing.isActive) sharing.since = now;
  sharing.isActive = true;
}

void noticeClosedWindows(Mac& mac) {
  const auto isClosed = [&](const Sharing& sharing) {
    return sharing.isActive && findWindow(mac.world, sharing.window) == nullptr;
  };
  switch (mac.world.system.closedWindowSharing) {
    case ClosedWindowSharing::goesOn:
      return;
    case ClosedWindowSharing::inactive:
      for (Sharing& sharing : mac.world.sharings) {
        if (isClosed(sharing)) makeInactive(mac, sharing);
      }
      return;
    case ClosedWindowSharing::stopped:
      stopThose(mac, isClosed, noSource);
      return;
  }
}

void stopSharing(Mac& mac, Pid owner, const std::string& description) {
  const auto isMeant = [&](const Sharing& sharing) { return owner == 0 || sharing.owner == owner; };
  stopThose(mac, isMeant, description);
}

void forgetSharing(Mac& mac, Pid client) {
  auto& sharings = mac.world.sharings;
  for (auto sharing = sharings.begin(); sharing != sharings.end();) {
    if (sharing->client != client) {
      ++sharing;
      continue;
    }
    note(mac, *sharing, "gone with its process");
    sharing = sharings.erase(sharing);
  }
}

}  // namespace simulator
