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

// Receivers drop events that come faster.
constexpr std::uint32_t eventPauseMicroseconds = 12'000;

}  // namespace

bool mayActNow() {
  requireCaptureAlive();
  if (sessionUsable()) return true;
  globals().droppedWhileLocked = true;
  return false;
}

bool postTarget(const std::optional<quartz::Event>& event, platform::Pid pid, Routes routes) {
  // Before every event, not once for all: a service may die and a screen lock in mid-sequence, and
  // what follows would go to a window without its mark, or to the lock screen.
  if (!mayActNow() || !event) return false;
  quartz::setField(*event, quartz::Field::sourceUserData, ownEventTag);
  const Sky::PostToPid postPrivately = routes.privateRoute ? Sky::postToPid() : nullptr;
  // With the pause: an application that is still taking an event must not lose its focus meanwhile.
  const Act act;
  if (postPrivately != nullptr) postPrivately(pid, event->get());
  if (routes.publicRoute) quartz::postToPid(pid, *event);
  loop::sleepMicroseconds(eventPauseMicroseconds);
  return true;
}

}  // namespace driver
