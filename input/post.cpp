#include "input/post.h"

#include <cstdint>

#include "capture/liveness.h"
#include "input/session.h"
#include "input/sky.h"
#include "main/globals.h"
#include "platform/loop.h"

namespace driver {

namespace {

// Receivers drop events that come faster.
constexpr std::uint32_t eventPauseMicroseconds = 12'000;

/// Both routes and the pause are part of one act of the caller's.
void postNow(const quartz::Event& event, platform::Pid pid, Sky::PostToPid postPrivately,
             bool publicRoute) {
  if (postPrivately != nullptr) postPrivately(pid, event.get());
  if (publicRoute) quartz::postToPid(pid, event);
  loop::sleepMicroseconds(eventPauseMicroseconds);
}

Sky::PostToPid privatePost(const quartz::Event& event, Routes routes) {
  quartz::setField(event, quartz::Field::sourceUserData, ownEventTag);
  return routes.privateRoute ? Sky::postToPid() : nullptr;
}

}  // namespace

bool mayActNow() {
  requireCaptureAlive();
  if (sessionUsable()) return true;
  globals().droppedWhileLocked = true;
  return false;
}

void postTarget(const std::optional<quartz::Event>& event, platform::Pid pid, Routes routes) {
  // Before every event, not once for all: a service may die and a screen lock in mid-sequence, and
  // what follows would go to a window without its mark, or to the lock screen.
  if (!mayActNow() || !event) return;
  const Sky::PostToPid postPrivately = privatePost(*event, routes);
  // With the pause: an application that is still taking an event must not lose its focus meanwhile.
  const Act act;
  postNow(*event, pid, postPrivately, routes.publicRoute);
}

void postRelease(const std::optional<quartz::Event>& event, platform::Pid pid) {
  if (!event || !isCaptureAlive() || !sessionUsable()) return;
  const Routes routes;
  postNow(*event, pid, privatePost(*event, routes), routes.publicRoute);
}

bool Press::down(const std::optional<quartz::Event>& event, Routes routes) {
  const bool may = mayActNow();
  const Sky::PostToPid postPrivately = may && event ? privatePost(*event, routes) : nullptr;
  if (isEnding()) {
    ++withheld_;
    return false;
  }
  if (!may || !event) return false;
  postNow(*event, pid_, postPrivately, routes.publicRoute);
  return true;
}

void Press::up(const std::optional<quartz::Event>& event, Routes routes) {
  if (withheld_ > 0) {
    --withheld_;
    return;
  }
  if (!mayActNow() || !event) return;
  postNow(*event, pid_, privatePost(*event, routes), routes.publicRoute);
}

}  // namespace driver
