#include "input/keyboard_window.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "accessibility/snapshot.h"
#include "platform/text.h"
#include "platform/window_server.h"

namespace driver {

namespace {

using Number = platform::WindowNumber;
using Windows = std::vector<windowserver::Window>;

// An application and the server need not round a frame alike.
constexpr double tolerance = 2;  // points

// What an application says may go round in circles, or have no end.
constexpr int nestedSheetsMax = 64;
constexpr std::size_t visitsMax = 20'000;

constexpr const char* panelService = "com.apple.appkit.xpc.openAndSavePanelService";

/// Looks for sheets, and at no more elements than a walk may visit. Of each it reads the role
/// alone: a window's children may be thousands, with as many children of their own.
class SheetSearch {
 public:
  /// How many sheets lie on the window: none, one, or several, of which the first two are counted.
  int count(Snapshot& window) {
    found_ = nullptr;
    int sheets = 0;
    for (Snapshot& child : window.children()) {
      if (left_ == 0 || sheets == 2) break;
      --left_;
      if (child.role() != "AXSheet") continue;
      found_ = &child;
      ++sheets;
    }
    return sheets;
  }

  /// None for a window without a sheet, or with several.
  std::optional<ax::Element> innermost(const ax::Element& window) {
    Snapshot current(window);
    int level = 0;
    for (; level < nestedSheetsMax && count(current) == 1; ++level) {
      Snapshot sheet = std::move(*found_);
      current = std::move(sheet);
    }
    return level > 0 ? std::optional(current.element()) : std::nullopt;
  }

 private:
  std::size_t left_ = visitsMax;
  Snapshot* found_ = nullptr;  // by `count`, among the children
};

/// True when the entry has a number that no window can have.
bool hasImpossibleNumber(const windowserver::Window& entry) {
  return entry.number && !std::in_range<Number>(*entry.number);
}

bool isNear(double a, double b) { return std::fabs(a - b) < tolerance; }

bool haveSameOrigin(const Rect& a, const Rect& b) { return isNear(a.x, b.x) && isNear(a.y, b.y); }

bool match(const Rect& a, const Rect& b) {
  return haveSameOrigin(a, b) && isNear(a.width, b.width) && isNear(a.height, b.height);
}

/// By what a window element is known to the server.
struct Likeness {
  std::optional<Number> number;
  std::string title;
  Rect frame;

  bool fits(const windowserver::Window& entry, const Rect& bounds) const {
    if (number) return numberOf(entry) == number;
    return text::equal(entry.name.value_or(""), title) && match(bounds, frame);
  }
};

std::optional<TargetWindow> onlyFitting(const Windows& list, const Likeness& likeness,
                                        platform::Pid pid) {
  bool isFound = false;
  std::optional<TargetWindow> found;
  for (const windowserver::Window& entry : list) {
    if (entry.ownerPid != pid) continue;
    const std::optional<Rect> bounds = boundsOf(entry);
    if (!bounds) continue;
    // A list with such a number is not to be trusted any further.
    if (hasImpossibleNumber(entry)) break;
    if (!likeness.fits(entry, *bounds)) continue;
    if (isFound) return std::nullopt;
    isFound = true;
    // One without a number cannot be given focus, but makes the choice ambiguous all the same.
    if (const auto number = numberOf(entry)) found = TargetWindow{*number, *bounds};
  }
  return found;
}

/// As many of the application's windows as a walk may visit.
std::vector<ax::Element> firstWindows(const ax::Element& application) {
  std::vector<ax::Element> windows = elementsIn(axAttr(application, "AXWindows"));
  const auto count = static_cast<std::ptrdiff_t>(std::min(windows.size(), visitsMax));
  windows.erase(windows.begin() + count, windows.end());
  return windows;
}

/// The numbers of the application's windows and of the sheets on them.
std::set<Number> ownNumbers(const ax::Element& application) {
  std::set<Number> numbers;
  SheetSearch search;
  for (const ax::Element& window : firstWindows(application)) {
    if (const auto number = messages::windowNumber(window)) numbers.insert(*number);
    const std::optional<ax::Element> sheet = search.innermost(window);
    const auto number = sheet ? messages::windowNumber(*sheet) : std::nullopt;
    if (number) numbers.insert(*number);
  }
  return numbers;
}

/// The panel service that owns the entry, if that is the owner.
std::optional<workspace::Application> serviceOf(const windowserver::Window& entry,
                                                const workspace::Application& app) {
  const std::int64_t pid = entry.ownerPid.value_or(0);
  if (pid <= 0 || !std::in_range<platform::Pid>(pid)) return std::nullopt;
  auto owner = pid == app.pid ? app : workspace::application(static_cast<platform::Pid>(pid));
  return owner && owner->bundleIdentifier == panelService ? owner : std::nullopt;
}

/// The panels at the place of the target window.
std::vector<RemoteOpenPanel> panelsAt(const TargetWindow& target,
                                      const workspace::Application& app) {
  std::vector<RemoteOpenPanel> panels;
  const auto list = windowserver::windows(windowserver::Windows::allWithoutDesktop);
  if (!list) return panels;
  for (const windowserver::Window& entry : *list) {
    const std::optional<Rect> bounds = boundsOf(entry);
    const std::optional<Number> number = numberOf(entry);
    if (!bounds || !number) continue;
    // The place alone: a panel is as large as it likes.
    if (!haveSameOrigin(*bounds, target.bounds)) continue;
    if (auto service = serviceOf(entry, app)) panels.push_back({*service, {*number, *bounds}});
  }
  return panels;
}

}  // namespace

ax::Element innermostSheet(const ax::Element& window) {
  return SheetSearch().innermost(window).value_or(window);
}

bool hasSheet(const ax::Element& application) {
  SheetSearch search;
  for (const ax::Element& element : firstWindows(application)) {
    Snapshot window(element);
    if (search.count(window) > 0) return true;
  }
  return false;
}

std::optional<TargetWindow> inputWindow(const ax::Element& window, platform::Pid pid) {
  Snapshot now(window);
  now.read(frameAttributes | AttributeSet{Attribute::title});
  const std::optional<Rect> frame = axFrame(now);
  if (!frame) return std::nullopt;
  const std::string* title = now.text(Attribute::title);
  // Also what is not on screen: a window on another space has the keyboard as well.
  const auto list = windowserver::windows(windowserver::Windows::allWithoutDesktop);
  if (!list) return std::nullopt;
  const Likeness likeness{messages::windowNumber(window), title != nullptr ? *title : "", *frame};
  return onlyFitting(*list, likeness, pid);
}

std::optional<TargetWindow> keyboardWindow(const workspace::Application& app) {
  const ax::Element application = ax::application(app.pid);
  std::optional<ax::Element> window = axElement(application, "AXFocusedWindow");
  if (!window || !axWindowInScope(*window)) {
    std::vector<ax::Element> windows = axWindows(application);
    if (windows.empty()) return std::nullopt;
    window = std::move(windows.front());
  }
  return inputWindow(innermostSheet(*window), app.pid);
}

std::optional<RemoteOpenPanel> remoteOpenPanel(const workspace::Application& app,
                                               const TargetWindow& sheetWindow) {
  std::vector<RemoteOpenPanel> panels = panelsAt(sheetWindow, app);
  // Nearly always: then the application need not be asked for its windows.
  if (panels.empty()) return std::nullopt;
  const std::set<Number> own = ownNumbers(ax::application(app.pid));
  std::erase_if(panels,
                [&](const RemoteOpenPanel& panel) { return own.contains(panel.window.id); });
  return panels.size() == 1 ? std::optional(std::move(panels.front())) : std::nullopt;
}

}  // namespace driver
