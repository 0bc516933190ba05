#include "input/keyboard_commands.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "accessibility/text_field.h"
#include "input/background_text.h"
#include "input/chromium.h"
#include "input/focus.h"
#include "input/keyboard_input.h"
#include "input/keyboard_window.h"
#include "input/keys.h"
#include "input/paste.h"
#include "input/session.h"
#include "input/sky_focus.h"
#include "main/ending.h"
#include "main/replies.h"
#include "main/state_queries.h"
#include "platform/ax.h"
#include "platform/loop.h"
#include "platform/types.h"
#include "platform/workspace.h"

namespace driver {

namespace {

// The application takes keys when it comes to them. One that has lost its focus by then types the
// last of them elsewhere, or nowhere.
constexpr std::uint32_t focusPauseMicroseconds = 50'000;

// A renderer in a process of its own moves its focus; the reply must not come before that.
constexpr std::uint32_t restoredMicroseconds = 100'000;

/// Delivers one keyboard input. May throw InputFailure.
using KeyboardAction = std::function<void(KeyboardInput& input)>;

/// Why the input was not delivered, or not all of it; none when it was.
std::optional<Reply> refusalOf(const KeyboardAction& action, KeyboardInput& input) {
  try {
    action(input);
    return std::nullopt;
  } catch (const KeyboardTaken& taken) {
    Reply reply = refusal(taken.message());
    reply["typed"] = static_cast<std::int64_t>(input.typed());
    return reply;
  } catch (const InputFailure& failure) {
    return refusal(failure.message());
  }
}

/// The element that loses its focus when its window becomes key. AppKit gives it back by itself. A
/// sheet has a focus of its own, which a field beneath it must not take.
std::optional<ax::Element> focusToRestore(const workspace::Application& app) {
  if (!isChromium(app)) return std::nullopt;
  if (hasSheet(ax::application(app.pid))) return std::nullopt;
  const std::optional<Snapshot> focused = axFocused(axApp(app.pid));
  return focused ? std::optional(focused->element()) : std::nullopt;
}

void restoreFocus(const ax::Element& element) {
  // In silence: the input itself has arrived, or has said that it was withheld.
  if (!sessionUsable()) return;
  Snapshot now(element);
  now.read({Attribute::role, Attribute::editable});
  if (!isTextInput(now)) return;
  messages::setAttribute(element, "AXFocused", ax::Value{true});
  loop::sleepMicroseconds(restoredMicroseconds);
}

// The key window of an application in front is the user's choice: nothing here changes it.
std::optional<Reply> typeInFront(const KeyboardTarget& target, const KeyboardAction& action) {
  KeyboardInput input(target, true);
  if (!input.hasKeyboard()) {
    return refusal("another window of the target app currently owns the user's keyboard");
  }
  return refusalOf(action, input);
}

/// Makes the window key, and delivers what is not the user's by then.
std::optional<Reply> typeInKeyWindow(const KeyboardTarget& target, const KeyboardAction& action) {
  if (!makeKeyInBackground(target.pid, target.window)) {
    return refusal("background key-window selection failed");
  }
  KeyboardInput input(target);
  const KeyboardAction unlessTaken = [&](KeyboardInput& untaken) {
    untaken.requireKeyboard();
    action(untaken);
  };
  return refusalOf(unlessTaken, input);
}

/// Gives the window focus, and notes that it must be taken back. `isInBackground` becomes what is
/// found then: that the process is not in front.
bool beginsKeyboardFocus(const KeyboardTarget& target,
                         const std::shared_ptr<bool>& isInBackground) {
  const Act act;  // until it is noted, nobody could take the focus back
  if (!inputFocusHeld(target.pid) && !Sky::focus(target.pid, target.window, true)) return false;
  // Also of focus that is held: the hold may end before this does.
  pushUndo([target, isInBackground] {
    *isInBackground = takeFocusBack(FocusGiver::keyboardInput, target.pid, target.window);
  });
  return true;
}

std::optional<Reply> typeInBackground(const KeyboardTarget& target,
                                      const std::optional<ax::Element>& focused,
                                      const KeyboardAction& action) {
  // One answer decides on both, the window's focus and the field's. Shared with the undo, which may
  // outlive this frame.
  const auto isInBackground = std::make_shared<bool>(false);
  if (!beginsKeyboardFocus(target, isInBackground)) {
    return refusal("background keyboard focus is unavailable on this macOS");
  }
  std::optional<Reply> refused = typeInKeyWindow(target, action);
  loop::sleepMicroseconds(focusPauseMicroseconds);
  runNewestUndo();
  if (focused && *isInBackground) restoreFocus(*focused);
  return refused;
}

/// The frame of all background keyboard input: finds the application and the one window of it that
/// takes the keyboard, makes it the key window without raising it, runs `action` and gives focus
/// back, also should the run fail meanwhile. An application in front is typed into only where the
/// user types, and as long as it is in front; one that comes to front only as long as the user
/// types there. Returns the reply: what made it impossible, or where the input went. The message of
/// an InputFailure of the action becomes a refusal.
Reply withTargetKeyboard(const std::string& app, const KeyboardAction& action) {
  if (!sessionUsable()) return lockedRefusal("the Mac is locked or not on console");
  const std::optional<workspace::Application> application = runningApp(app);
  if (!application || application->hidden) {
    return refusal("target app is not running or is hidden");
  }
  const std::optional<TargetWindow> window = keyboardWindow(*application);
  if (!window) return refusal("no unambiguous target keyboard window");
  // The panel lies over the window and has its keys, in a process of its own.
  KeyboardTarget target{application->pid, window->id};
  if (const auto panel = remoteOpenPanel(*application, *window)) {
    target = {panel->service.pid, panel->window.id};
  }
  const std::optional<ax::Element> focused = focusToRestore(*application);

  std::optional<Reply> refused = foregroundPID() == target.pid
                                     ? typeInFront(target, action)
                                     : typeInBackground(target, focused, action);
  if (refused) return std::move(*refused);
  return {{"ok", true}, {"via", "background"}, {"window", target.window}, {"pid", target.pid}};
}

}  // namespace

void bgKeyCommand(const Arguments& arguments) {
  emit(withTargetKeyboard(arguments[2],
                          [&](const KeyboardInput& input) { key(arguments[3], input); }));
}

void bgTypeCommand(const Arguments& arguments) {
  emit(withTargetKeyboard(arguments[2],
                          [&](KeyboardInput& input) { backgroundText(arguments[3], input); }));
}

void bgPasteFilesCommand(const Arguments& arguments) {
  const std::vector<std::string> paths = filePaths(arguments);
  emit(withTargetKeyboard(arguments[2],
                          [&](const KeyboardInput& input) { pasteFiles(paths, input); }));
}

}  // namespace driver
