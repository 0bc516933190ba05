#include "input/pointer_focus.h"

#include "input/foreground.h"
#include "input/held_focus.h"
#include "input/sky_focus.h"
#include "main/act.h"
#include "main/undo.h"
#include "platform/loop.h"

namespace driver {

namespace {

void takeFocusBack(platform::Pid pid, platform::WindowNumber window) {
  if (inputFocusHeld(pid) || foregroundPID() == pid) return;
  Sky::focus(pid, window, false);
}

}  // namespace

PointerFocus beginPointerFocus(platform::Pid pid, const TargetWindow& window) {
  if (foregroundPID() == pid || inputFocusHeld(pid)) return PointerFocus::notNeeded;
  const Act act;  // until it is noted, nobody could take the focus back
  if (!Sky::focus(pid, window.id, true)) return PointerFocus::unavailable;
  pushUndo([pid, number = window.id] { takeFocusBack(pid, number); });
  return PointerFocus::given;
}

void endPointerFocus(PointerFocus focus, std::uint32_t pauseMicroseconds) {
  if (focus != PointerFocus::given) return;
  loop::sleepMicroseconds(pauseMicroseconds);
  runNewestUndo();
}

}  // namespace driver
