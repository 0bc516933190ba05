#include "input/keyboard_input.h"

#include <optional>

#include "accessibility/element.h"
#include "input/focus.h"
#include "input/keyboard_window.h"
#include "platform/ax.h"

namespace driver {

KeyboardTaken::KeyboardTaken()
    : InputFailure(
          "the user's keyboard is in another window of the target app by now; the rest of the "
          "input was withheld") {}

bool KeyboardInput::isInFront() const { return foregroundPID() == target_.pid; }

std::optional<ax::Element> KeyboardInput::keyWindow() const {
  return axElement(ax::application(target_.pid), "AXFocusedWindow");
}

bool KeyboardInput::hasKeyboard() const {
  const std::optional<ax::Element> focused = keyWindow();
  if (!focused) return false;
  const std::optional<TargetWindow> window = inputWindow(innermostSheet(*focused), target_.pid);
  return window && window->id == target_.window;
}

bool KeyboardInput::mayGoOn() const { return !isInFront() || hasKeyboard(); }

void KeyboardInput::requireKeyboard() const {
  if (!mayGoOn()) throw KeyboardTaken();
}

}  // namespace driver
