#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/messages.h"
#include "main/ending.h"
#include "main/replies.h"
#include "main/state_queries.h"
#include "platform/workspace.h"

namespace driver {

namespace {

bool isMinimized(const ax::Element& window) {
  const std::optional<ax::Value> value = axAttr(window, "AXMinimized");
  const bool* minimized = value ? value->get<bool>() : nullptr;
  return minimized != nullptr && *minimized;
}

/// Whether it is known of every window, and there is one. Only then there is nothing to see of the
/// application, and one of them is brought back; whoever has minimized just some has them away.
bool areAllMinimized(const std::vector<ax::Element>& windows) {
  return !windows.empty() && windows.size() <= windowsAskedMax &&
         std::all_of(windows.begin(), windows.end(), isMinimized);
}

std::string titleOf(const ax::Element& window) {
  const std::vector<std::string> titles = axTexts(window, {"AXTitle"});
  return titles.empty() ? "" : titles.front();
}

bool unhides(platform::Pid pid) {
  holdBackIfEnding();
  return workspace::unhide(pid);
}

}  // namespace

void revealCommand(const Arguments& arguments) {
  const std::optional<workspace::Application> app = runningApp(arguments[2]);
  if (!app) {
    emit(refusal("app not running"));
    return;
  }
  Value::List did;
  // An unhidden application shows its windows where they were, behind the others.
  if (app->hidden && unhides(app->pid)) did.emplace_back("unhid");
  const std::vector<ax::Element> windows = axWindows(axApp(app->pid));
  if (areAllMinimized(windows)) {
    const ax::Element& first = windows.front();
    if (messages::setAttribute(first, "AXMinimized", ax::Value{false}) == ax::Error::success) {
      did.emplace_back("unminimized " + quoted(titleOf(first)));
    }
  }
  emit({{"ok", true}, {"did", did}, {"windows", static_cast<std::int64_t>(windows.size())}});
}

}  // namespace driver
