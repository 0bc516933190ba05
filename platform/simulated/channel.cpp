#include "platform/simulated/channel.h"

#include <atomic>

#include "platform/simulated/own_channel.h"

namespace simulated {

namespace {

platform::Channel* chosen = nullptr;
std::atomic<long> handles{0};

}  // namespace

platform::Channel& channel() {
  if (chosen == nullptr) chosen = &ownChannel();
  return *chosen;
}

void setChannel(platform::Channel* channel) { chosen = channel; }

long liveHandles() { return handles; }

void countHandle(long change) { handles += change; }

}  // namespace simulated
