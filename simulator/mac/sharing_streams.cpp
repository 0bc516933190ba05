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

}  // namespace

std::int64_t framesOf(const Sharing& sharing, Microseconds now) {
  const Microseconds interval =
      std::max<std::int64_t>(sharing.configuration.frameIntervalSeconds, 1) * microsecondsPerSecond;
  return (now - sharing.since) / interval + 1;
}

void stopSharing(Mac& mac, Pid owner, const std::string& description) {
  auto& sharings = mac.world.sharings;
  for (auto sharing = sharings.begin(); sharing != sharings.end();) {
    if (owner != 0 && sharing->owner != owner) {
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
