#include "input/held_focus.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "base/numbers.h"
#include "input/foreground.h"
#include "input/sky_focus.h"
#include "main/act.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/process.h"

namespace driver {

namespace {

void takeBackUnlessInFront(platform::Pid pid, platform::WindowNumber window) {
  const std::optional<platform::Pid> foreground = foregroundPID();
  if (foreground && *foreground != pid) Sky::focus(pid, window, false);
}

bool isHeldHere(platform::Pid pid) {
  const std::lock_guard lock(globals().mutex);
  return globals().heldInputFocus.contains(pid);
}

std::optional<platform::Pid> anyHeld() {
  const std::lock_guard lock(globals().mutex);
  const auto& held = globals().heldInputFocus;
  return held.empty() ? std::nullopt : std::optional(held.begin()->first);
}

}  // namespace

bool inputFocusHeld(platform::Pid pid) {
  return isHeldHere(pid) || process::environment("CU_FOCUS_PID") == std::to_string(pid);
}

bool noteHeldFocus(platform::Pid pid, platform::WindowNumber window, bool renews) {
  const std::lock_guard lock(globals().mutex);
  auto& held = globals().heldInputFocus;
  const auto entry = held.find(pid);
  const bool wasHeld = entry != held.end();
  if (renews) {
    if (wasHeld) entry->second.window = window;
  } else {
    held[pid] = {wasHeld ? entry->second.count + 1 : 1, window};
  }
  return wasHeld;
}

std::size_t heldFocusCount() {
  const std::lock_guard lock(globals().mutex);
  return globals().heldInputFocus.size();
}

void releaseInputFocus(platform::Pid pid, bool all) {
  platform::WindowNumber window = 0;
  std::optional<Act> act;
  {
    const std::lock_guard lock(globals().mutex);
    auto& held = globals().heldInputFocus;
    const auto entry = held.find(pid);
    if (entry == held.end()) return;
    if (!all && entry->second.count >= 2) {
      --entry->second.count;
      return;
    }
    act.emplace(lock);
    window = entry->second.window;
    held.erase(entry);
  }
  takeBackUnlessInFront(pid, window);
}

void releaseAllInputFocus() {
  while (const auto pid = anyHeld()) releaseInputFocus(*pid, true);
  awaitActs();
}

void focusReleaseCommand(const Arguments& arguments) {
  const std::optional<std::int32_t> pid = parseInt32(arguments[2]);
  const std::optional<std::uint32_t> window = parseUint32(arguments[3]);
  if (!pid || *pid <= 0 || !window) fail(std::string(invalidFocusRelease));
  takeBackUnlessInFront(*pid, *window);
  emit({{"ok", true}});
}

}  // namespace driver
