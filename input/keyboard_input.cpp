#include "input/keyboard_input.h"

#include <optional>

#include "accessibility/element.h"
#include "input/focus.h"
#include "input/keyboard_window.h"
#include "platform/ax.h"

namespace driver {

std::optional<ax::Element> KeyboardInput::keyWindow() const {
  return axElement(ax::application(target_.pid), "AXFocusedWindow");
}

bool KeyboardInput::hasKeyboard() const {
  const std::optional<ax::Element> focused = keyWindow();
  if (!focused) return false;
  const std::optional<TargetWindow> window = inputWindow(innermostSheet(*focused), target_.pid);
  return window && window->id == target_.window;
}

void KeyboardInput::requireKeyboard() const {
  const std::optional<platform::Pid> foreground = foregroundPID();
  if (foreground == target_.pid && !hasKeyboard()) {
    throw KeyboardTaken(
        "the user's keyboard is in another window of the target app by now; the rest of the input "
        "was withheld");
  }
  // An application behind takes keys with focus alone, and this one was given none.
  const bool isLeft = inFront_ && foreground && foreground != target_.pid;
  if (isLeft && !inputFocusHeld(target_.pid)) {
    throw KeyboardTaken("the target app is no longer in front; the rest of the input was withheld");
  }
}

}  // namespace driver
