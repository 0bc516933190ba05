#include "platform/simulated/channel.h"

#include <atomic>
#include <cstdlib>

#include "platform/simulated/absent_channel.h"
#include "platform/simulated/joined_channel.h"

namespace simulated {

namespace {

platform::Channel* chosen = nullptr;
std::atomic<long> handles{0};

/// Lives until the process ends, whose exit needs it.
platform::Channel* ownChannel() {
  static platform::Channel* const own = []() -> platform::Channel* {
    const char* socket = std::getenv("SIMULATED_MAC");
    if (socket == nullptr || *socket == '\0') return new AbsentChannel();
    return joinMac(socket).release();
  }();
  return own;
}

}  // namespace

platform::Channel& channel() {
  if (chosen == nullptr) chosen = ownChannel();
  return *chosen;
}

void setChannel(platform::Channel* channel) { chosen = channel; }

long liveHandles() { return handles; }

void countHandle(long change) { handles += change; }

}  // namespace simulated
