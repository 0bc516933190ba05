#include "tests/oracle/keyboard.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>
#include <vector>

#include "tests/oracle/commands.h"
#include "tests/oracle/elements.h"
#include "tests/oracle/focus.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/text_entry.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

constexpr const char* panelService = "com.apple.appkit.xpc.openAndSavePanelService";

std::vector<Element> sheetsIn(Stage& stage, const Element& element) {
  std::vector<Element> sheets;
  for (const Element& child : stage.list(element, "AXChildren").value_or(std::vector<Element>())) {
    if (roleOf(stage, child) == "AXSheet") sheets.push_back(child);
  }
  return sheets;
}

Element innermostSheet(Stage& stage, Element element) {
  for (auto sheets = sheetsIn(stage, element); sheets.size() == 1;
       sheets = sheetsIn(stage, element)) {
    element = sheets[0];
  }
  return element;
}

bool near(double a, double b) { return std::abs(a - b) < 2; }

bool matches(const Rect& a, const Rect& b) {
  return near(a.x, b.x) && near(a.y, b.y) && near(a.width, b.width) && near(a.height, b.height);
}

/// The window server's window of an element.
std::optional<TargetWindow> inputWindow(Stage& stage, const Element& element, Pid pid) {
  const auto frame = stage.frame(element);
  if (!frame) return std::nullopt;
  const std::string title = stage.text(element, "AXTitle").value_or("");
  const WindowNumber known = stage.windowOf(element);
  std::vector<TargetWindow> candidates;
  for (const Listed& entry : listedWindows(stage, false)) {
    if (entry.owner != pid) continue;
    const auto number = entry.window();
    if (!number) break;
    const bool isIt = known != 0
                          ? *number == known
                          : same(entry.name.value_or(""), title) && matches(entry.frame, *frame);
    if (isIt) candidates.push_back({*number, entry.frame});
  }
  return candidates.size() == 1 ? std::optional(candidates[0]) : std::nullopt;
}

std::optional<TargetWindow> keyboardWindow(Stage& stage, Pid pid) {
  auto window = stage.link({pid, 0}, "AXFocusedWindow");
  if (!window || !isWindowInScope(stage, *window)) {
    const auto windows = windowsInScope(stage, pid);
    if (windows.empty()) return std::nullopt;
    window = windows[0];
  }
  return inputWindow(stage, innermostSheet(stage, *window), pid);
}

/// A panel of the system's service that lies over the application's window.
struct Receiver {
  Pid pid = 0;
  TargetWindow window;
};

std::optional<Receiver> remoteOpenPanel(Stage& stage, Pid pid, const TargetWindow& over) {
  std::set<std::int64_t> own;
  for (const Element& window : stage.list({pid, 0}, "AXWindows").value_or(std::vector<Element>())) {
    own.insert(stage.windowOf(window));
    own.insert(stage.windowOf(innermostSheet(stage, window)));
  }
  std::vector<Receiver> panels;
  for (const Listed& entry : listedWindows(stage, false)) {
    const auto number = entry.window();
    if (!number || own.count(entry.number) != 0) continue;
    if (bundleOf(stage, entry.owner) != panelService) continue;
    if (!near(entry.frame.x, over.frame.x) || !near(entry.frame.y, over.frame.y)) continue;
    panels.push_back({entry.owner, {*number, entry.frame}});
  }
  return panels.size() == 1 ? std::optional(panels[0]) : std::nullopt;
}

/// What gets its focus back in the end.
std::optional<Element> focusToRestore(Stage& stage, Pid pid) {
  for (const Element& window : stage.list({pid, 0}, "AXWindows").value_or(std::vector<Element>())) {
    if (!sheetsIn(stage, window).empty()) return std::nullopt;
  }
  if (!isChromium(stage, pid)) return std::nullopt;
  return focusedIn(stage, pid);
}

bool isUsersKeyWindow(Stage& stage, const Receiver& receiver) {
  const auto focused = stage.link({receiver.pid, 0}, "AXFocusedWindow");
  if (!focused) return false;
  const auto window = inputWindow(stage, innermostSheet(stage, *focused), receiver.pid);
  return window && window->number == receiver.window.number;
}

void giveBack(Stage& stage, const Receiver& receiver, const std::optional<Element>& restored) {
  stage.wait(50'000);
  if (foreground(stage) == receiver.pid) return;
  if (!isFocusHeld(stage, receiver.pid)) focus(stage, receiver.pid, receiver.window.number, false);
  if (!restored || !isTextInput(stage, *restored)) return;
  stage.write(*restored, "AXFocused", true);
  stage.wait(100'000);
}

/// Acts, and makes a refusal in the middle of it the reply.
Json acted(const Receiver& receiver, const std::function<void(Pid)>& act) {
  try {
    act(receiver.pid);
  } catch (const InputRefusal& refused) {
    return refusal(refused.message);
  }
  return {{"ok", true},
          {"via", "background"},
          {"window", receiver.window.number},
          {"pid", receiver.pid}};
}

Json inBackground(Stage& stage, const Receiver& receiver, const std::optional<Element>& restored,
                  const std::function<void(Pid)>& act) {
  if (!isFocusHeld(stage, receiver.pid) &&
      !focus(stage, receiver.pid, receiver.window.number, true)) {
    return refusal("background keyboard focus is unavailable on this macOS");
  }
  const Json reply = makeKey(stage, receiver.pid, receiver.window.number)
                         ? acted(receiver, act)
                         : refusal("background key-window selection failed");
  giveBack(stage, receiver, restored);
  return reply;
}

}  // namespace

Json withTargetKeyboard(Stage& stage, const std::string& app,
                        const std::function<void(Pid receiver)>& act) {
  if (!sessionUsable(stage)) {
    Json reply = refusal("the Mac is locked or not on console");
    reply["locked"] = true;
    return reply;
  }
  const auto pid = runningApp(stage, app);
  if (!pid || isHidden(stage, *pid)) return refusal("target app is not running or is hidden");
  const auto window = keyboardWindow(stage, *pid);
  if (!window) return refusal("no unambiguous target keyboard window");
  const Receiver receiver = remoteOpenPanel(stage, *pid, *window).value_or(Receiver{*pid, *window});
  const auto restored = focusToRestore(stage, *pid);
  if (foreground(stage) != receiver.pid) return inBackground(stage, receiver, restored, act);
  if (isUsersKeyWindow(stage, receiver)) return acted(receiver, act);
  return refusal("another window of the target app currently owns the user's keyboard");
}

}  // namespace oracle
