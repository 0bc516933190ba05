#include "input/post.h"

#include <cstdint>

#include "capture/liveness.h"
#include "input/session.h"
#include "input/sky.h"
#include "main/ending.h"
#include "main/globals.h"
#include "platform/loop.h"

namespace driver {

namespace {

constexpr std::uint32_t eventPauseMicroseconds = 12'000;

}  // namespace

void postTarget(const std::optional<quartz::Event>& event, platform::Pid pid, Routes routes) {
  requireCaptureAlive();
  if (!sessionUsable()) {
    globals().droppedWhileLocked = true;
    return;
  }
  if (!event) return;
  quartz::setField(*event, quartz::Field::sourceUserData, ownEventTag);
  const Sky::PostToPid postPrivately = routes.privateRoute ? Sky::postToPid() : nullptr;
  const Act act;
  if (postPrivately != nullptr) postPrivately(pid, event->get());
  if (routes.publicRoute) quartz::postToPid(pid, *event);
  loop::sleepMicroseconds(eventPauseMicroseconds);
}

}  // namespace driver
