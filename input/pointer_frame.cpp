#include "input/pointer_frame.h"

#include <cstdint>

#include "capture/window_image.h"
#include "input/context.h"
#include "input/session.h"
#include "main/state_queries.h"
#include "platform/loop.h"

namespace driver {

namespace {

constexpr int watchRounds = 3;
constexpr std::uint32_t roundMicroseconds = 200'000;

/// What may change by an input.
struct Appearance {
  std::optional<platform::Bytes> image;
  std::string focusSignature;
};

bool changesFrom(const Appearance& before, platform::Pid pid, platform::WindowNumber window) {
  for (int round = 0; round < watchRounds; ++round) {
    loop::sleepMicroseconds(roundMicroseconds);
    const std::optional<platform::Bytes> image = windowImage(window);
    // Without two pictures to compare, nothing speaks against a change.
    if (!before.image || !image || *before.image != *image) return true;
    if (focusSignature(pid) != before.focusSignature) return true;
  }
  return false;
}

}  // namespace

Reply background(const std::string& app, Point point, const SendAction& send) {
  if (!sessionUsable()) return lockedRefusal("the Mac is locked or not on console");
  const std::optional<workspace::Application> target = runningApp(app);
  if (!target || target->hidden) return refusal("target app is not running or is hidden");
  const std::optional<TargetWindow> window = windowAt(target->pid, point);
  if (!window) return refusal("no window of the app under the point");

  Appearance before;
  before.image = windowImage(window->id);
  before.focusSignature = focusSignature(target->pid);
  if (const auto error = send(*target, *window, point)) return refusal(*error);
  const bool changed = changesFrom(before, target->pid, window->id);
  return {{"ok", true}, {"via", "background"}, {"changed", changed}, {"window", window->id}};
}

}  // namespace driver
