#include "guard/guard_tap.h"

#include <array>
#include <cstdint>

#include "guard/grace.h"
#include "guard/guard_end.h"
#include "guard/screen_lock.h"
#include "input/input_report.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/quartz.h"

namespace driver {

namespace {

using quartz::EventType;
using tap::Verdict;

constexpr std::uint64_t returnMask =
    tap::maskOf(EventType::leftMouseDown) | tap::maskOf(EventType::rightMouseDown) |
    tap::maskOf(EventType::otherMouseDown) | tap::maskOf(EventType::mouseMoved) |
    tap::maskOf(EventType::keyDown) | tap::maskOf(EventType::scrollWheel);

/// Input that was under way when grace began is no answer to it.
constexpr double firstSeconds = 1;

void endInGrace() {
  globals().guardRelocking = true;
  emitGuardLine({{"ok", true}, {"by", "grace"}});
  loop::postToMain([] { process::exit(0); });
}

void lockAndEndSoon() {
  globals().guardRelocking = true;
  const bool relocked = lockScreenNow();
  emitGuardLine({{"ok", true}, {"relocked", relocked}, {"by", "user"}});
  loop::scheduleOnMain(lastMoments, 1, [] { process::exit(0); });
}

bool isMovement(const tap::Event& event) {
  return event.type == static_cast<std::uint32_t>(EventType::mouseMoved);
}

}  // namespace

Verdict guardVerdict(const tap::Event& event) {
  if (isDisabledNotice(event)) {
    if (globals().guardTap) tap::enable(*globals().guardTap);
    return Verdict::pass;
  }
  if (!isUsersInput(event)) return Verdict::pass;
  if (globals().guardRelocking) return Verdict::swallow;
  const double left = hasGrace() ? graceLeft() : 0;
  if (left <= 0) {
    lockAndEndSoon();
  } else if (!isMovement(event) && left <= globals().guardGrace - firstSeconds) {
    endInGrace();
  }
  return Verdict::swallow;
}

void watchForReturn() {
  globals().guardTap = tap::create(tap::Place::head, tap::Kind::filters, returnMask, guardVerdict);
  if (!globals().guardTap) {
    fail("cannot watch for the user's return: accessibility permission is missing");
  }
  tap::attach(*globals().guardTap);
  tap::enable(*globals().guardTap);
}

}  // namespace driver
