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

bool KeyboardInput::hasKeyboard() const {
  const auto focused = axElement(ax::application(target_.pid), "AXFocusedWindow");
  if (!focused) return false;
  const std::optional<TargetWindow> window = inputWindow(innermostSheet(*focused), target_.pid);
  return window && window->id == target_.window;
}

bool KeyboardInput::mayGoOn() const { return !isInFront() || hasKeyboard(); }

void KeyboardInput::requireKeyboard() const {
  if (!mayGoOn()) throw KeyboardTaken();
}

}  // namespace driver
