#include "input/held_focus.h"

#include <cstdint>
#include <optional>
#include <string>

#include "base/numbers.h"
#include "input/foreground.h"
#include "input/sky_focus.h"
#include "main/replies.h"
#include "platform/process.h"

namespace driver {

namespace {

void takeBackUnlessInFront(platform::Pid pid, platform::WindowNumber window) {
  const std::optional<platform::Pid> foreground = foregroundPID();
  if (foreground && *foreground != pid) Sky::focus(pid, window, false);
}

}  // namespace

bool inputFocusHeld(platform::Pid pid) {
  if (globals().heldInputFocus.contains(pid)) return true;
  return process::environment("CU_FOCUS_PID") == std::to_string(pid);
}

void releaseInputFocus(platform::Pid pid, bool all) {
  auto& held = globals().heldInputFocus;
  const auto entry = held.find(pid);
  if (entry == held.end()) return;
  if (!all && entry->second.count >= 2) {
    --entry->second.count;
    return;
  }
  const platform::WindowNumber window = entry->second.window;
  held.erase(entry);
  takeBackUnlessInFront(pid, window);
}

void focusReleaseCommand(const Arguments& arguments) {
  const std::optional<std::int32_t> pid = parseInt32(arguments[2]);
  const std::optional<std::uint32_t> window = parseUint32(arguments[3]);
  if (!pid || *pid <= 0 || !window) fail(std::string(invalidFocusRelease));
  takeBackUnlessInFront(*pid, *window);
  emit({{"ok", true}});
}

}  // namespace driver
