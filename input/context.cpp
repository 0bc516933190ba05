#include "input/context.h"

#include <optional>
#include <vector>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "input/focus.h"
#include "input/session.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"
#include "platform/ax.h"

namespace driver {

namespace {

void requireKeyboardInScope(platform::Pid pid) {
  const auto focused = axElement(ax::application(pid), "AXFocusedWindow");
  if (focused && axWindowInScope(*focused)) return;
  fail(
      "another window of the target app currently owns the user's keyboard; background input will "
      "not switch it");
}

}  // namespace

void checkInputContext(ActsOnInput command, const Arguments& arguments) {
  if (command == ActsOnInput::no) return;
  if (!sessionUsable()) {
    fail("the Mac is locked or not on console; background input is unavailable");
  }
  const bool background = command == ActsOnInput::inBackground;
  std::optional<platform::Pid> foreground;
  if (background) {
    foreground = foregroundPID();
    if (!foreground) fail("current foreground process is unavailable");
  }
  if (arguments.size() < 3 || !globals().windowScope) return;
  const std::optional<workspace::Application> app = runningApp(arguments[2]);
  if (!app) return;
  if (!background) foreground = foregroundPID();
  if (foreground == app->pid) requireKeyboardInScope(app->pid);
}

std::string focusSignature(platform::Pid pid) {
  const std::vector<ax::Slot> focus =
      messages::attributes(ax::application(pid), {"AXFocusedWindow", "AXFocusedUIElement"});
  std::string signature = focus[0].value ? std::to_string(ax::hash(*focus[0].value)) : "-";
  const std::optional<ax::Element> element = elementIn(focus[1].value);
  if (!element) return signature;
  signature += "|" + std::to_string(ax::hash(*element));
  const std::vector<ax::Slot> state =
      messages::attributes(*element, {"AXSelectedTextRange", "AXValue"});
  if (const auto* range = state[0].value ? state[0].value->get<ax::Range>() : nullptr) {
    signature += "|" + std::to_string(range->location) + ":" + std::to_string(range->length);
  }
  if (state[1].value) signature += "|" + std::to_string(ax::hash(*state[1].value));
  return signature;
}

}  // namespace driver
