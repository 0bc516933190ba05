#include "input/keyboard_commands.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "accessibility/text_field.h"
#include "input/background_text.h"
#include "input/chromium.h"
#include "input/focus.h"
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

/// Delivers one keyboard input to the process that receives it. May throw InputFailure.
using KeyboardAction = std::function<void(platform::Pid pid)>;

/// What receives the input.
struct KeyboardTarget {
  platform::Pid pid = 0;
  platform::WindowNumber window = 0;
};

std::optional<std::string> failureOf(const KeyboardAction& action, platform::Pid pid) {
  try {
    action(pid);
    return std::nullopt;
  } catch (const InputFailure& failure) {
    return failure.message();
  }
}

/// The element that loses its focus when its window becomes key. AppKit gives it back by itself. A
/// sheet has a focus of its own, which a field beneath it must not take.
std::optional<ax::Element> focusToRestore(const workspace::Application& app) {
  if (!isChromium(app)) return std::nullopt;
  const ax::Element application = ax::application(app.pid);
  if (hasSheet(application)) return std::nullopt;
  const std::optional<Snapshot> focused = axFocused(application);
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
bool hasUsersKeyboard(const KeyboardTarget& target) {
  const auto focused = axElement(ax::application(target.pid), "AXFocusedWindow");
  if (!focused) return false;
  const std::optional<TargetWindow> window = inputWindow(innermostSheet(*focused), target.pid);
  return window && window->id == target.window;
}

std::optional<std::string> typeInFront(const KeyboardTarget& target, const KeyboardAction& action) {
  if (!hasUsersKeyboard(target)) {
    return "another window of the target app currently owns the user's keyboard";
  }
  return failureOf(action, target.pid);
}

/// Gives the window focus, and notes that it must be taken back.
bool beginsKeyboardFocus(const KeyboardTarget& target) {
  const Act act;  // until it is noted, nobody could take the focus back
  if (!inputFocusHeld(target.pid) && !Sky::focus(target.pid, target.window, true)) return false;
  // Also of focus that is held: the hold may end before this does.
  pushUndo([target] { takeFocusBack(FocusGiver::keyboardInput, target.pid, target.window); });
  return true;
}

std::optional<std::string> typeInBackground(const KeyboardTarget& target,
                                            const std::optional<ax::Element>& focused,
                                            const KeyboardAction& action) {
  if (!beginsKeyboardFocus(target)) return "background keyboard focus is unavailable on this macOS";
  std::optional<std::string> failure = "background key-window selection failed";
  if (Sky::makeKey(target.pid, target.window)) failure = failureOf(action, target.pid);
  loop::sleepMicroseconds(focusPauseMicroseconds);
  runNewestUndo();
  if (focused && foregroundPID() != target.pid) restoreFocus(*focused);
  return failure;
}

/// The frame of all background keyboard input: finds the application and the one window of it that
/// takes the keyboard, makes it the key window without raising it, runs `action` and gives focus
/// back, also should the run fail meanwhile. An application in front is typed into only where the
/// user types. Returns the reply: what made it impossible, or where the input went. The message of
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

  std::optional<std::string> failure = foregroundPID() == target.pid
                                           ? typeInFront(target, action)
                                           : typeInBackground(target, focused, action);
  if (failure) return refusal(std::move(*failure));
  return {{"ok", true}, {"via", "background"}, {"window", target.window}, {"pid", target.pid}};
}

}  // namespace

void bgKeyCommand(const Arguments& arguments) {
  emit(withTargetKeyboard(arguments[2], [&](platform::Pid pid) { key(arguments[3], pid); }));
}

void bgTypeCommand(const Arguments& arguments) {
  emit(withTargetKeyboard(arguments[2],
                          [&](platform::Pid pid) { backgroundText(arguments[3], pid); }));
}

void bgPasteFilesCommand(const Arguments& arguments) {
  const std::vector<std::string> paths = filePaths(arguments);
  emit(withTargetKeyboard(arguments[2], [&](platform::Pid pid) { pasteFiles(paths, pid); }));
}

}  // namespace driver
