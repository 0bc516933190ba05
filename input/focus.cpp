#include "input/focus.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "base/numbers.h"
#include "input/sky.h"
#include "input/sky_focus.h"
#include "main/ending.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/loop.h"
#include "platform/process.h"

namespace driver {

namespace {

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

std::optional<platform::Pid> foregroundPID() {
  const Sky::FrontProcess frontProcess = Sky::frontProcess();
  if (frontProcess == nullptr) return std::nullopt;
  const Sky::ProcessPID processPID = Sky::processPID();
  if (processPID == nullptr) return std::nullopt;
  platform::SerialNumber process;
  if (frontProcess(&process) != platform::statusSuccess) return std::nullopt;
  platform::Pid pid = 0;
  if (processPID(&process, &pid) != platform::statusSuccess) return std::nullopt;
  return pid;
}

bool takeFocusBack(FocusGiver giver, platform::Pid pid, platform::WindowNumber window) {
  // Pointer and keys ask for the hold at different times, before and after the foreground: one and
  // the same to the outcome, and the trace of a run shows each its own.
  if (giver == FocusGiver::pointerInput && inputFocusHeld(pid)) return true;
  const std::optional<platform::Pid> foreground = foregroundPID();
  if (foreground == pid) return false;
  // A hold may be minutes old: where nobody tells who is in front, it may be the process by now.
  // The focus of one input is given and taken back within a second, and must not stay.
  if (giver == FocusGiver::hold && !foreground) return false;
  if (giver == FocusGiver::keyboardInput && inputFocusHeld(pid)) return true;
  Sky::focus(pid, window, false);
  return true;
}

bool makeKeyInBackground(platform::Pid pid, platform::WindowNumber window) {
  bool isInFront = false;
  const bool isKey = Sky::makeKey(pid, window, [&] {
    isInFront = foregroundPID() == pid;
    return !isInFront;
  });
  return isKey || isInFront;
}

// The variable is compared as a text, and read afresh: its holder may come and go meanwhile.
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
    // Under the same lock: between the two an ending process would find neither hold nor act.
    act.emplace(lock);
    window = entry->second.window;
    held.erase(entry);
  }
  takeFocusBack(FocusGiver::hold, pid, window);
}

void releaseAllInputFocus() {
  while (const auto pid = anyHeld()) releaseInputFocus(*pid, true);
  // Another flow may be giving back the last one: its record must be out before the process goes.
  awaitActs();
}

void focusReleaseCommand(const Arguments& arguments) {
  const std::optional<std::int32_t> pid = parseInt32(arguments[2]);
  const std::optional<std::uint32_t> window = parseUint32(arguments[3]);
  if (!pid || *pid <= 0 || !window) fail(std::string(invalidFocusRelease));
  // Not this process's own hold: it serves one that was killed, and takes the caller's word for it.
  {
    const Act act;
    takeFocusBack(FocusGiver::hold, *pid, *window);
  }
  emit({{"ok", true}});
}

PointerFocus beginPointerFocus(platform::Pid pid, const TargetWindow& window) {
  if (foregroundPID() == pid || inputFocusHeld(pid)) return PointerFocus::notNeeded;
  const Act act;  // until it is noted, nobody could take the focus back
  if (!Sky::focus(pid, window.id, true)) return PointerFocus::unavailable;
  pushUndo([pid, number = window.id] { takeFocusBack(FocusGiver::pointerInput, pid, number); });
  return PointerFocus::given;
}

void endPointerFocus(PointerFocus focus, std::uint32_t pauseMicroseconds) {
  if (focus != PointerFocus::given) return;
  loop::sleepMicroseconds(pauseMicroseconds);
  runNewestUndo();
}

}  // namespace driver
