#include "simulator/departure.h"

#include "simulator/input/taps.h"
#include "simulator/mac/sharing_streams.h"

namespace simulator {

void endWithProcess(Mac& mac, Client& client) {
  mac.world.processes.erase(client.pid);
  client.pictures.clear();
  forgetSharing(mac, client.pid);
  std::erase_if(mac.world.covers, [&](const Cover& cover) { return cover.owner == client.pid; });
  if (!client.displayHolds.empty()) {
    enter(mac, {.kind = JournalEntry::Kind::awake,
                .target = client.pid,
                .what = "display released with its process"});
  }
  client.displayHolds.clear();
  dropTaps(mac, client);
}

}  // namespace simulator
