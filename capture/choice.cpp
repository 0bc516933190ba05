#include "capture/choice.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "accessibility/scope.h"
#include "base/geometry.h"
#include "main/globals.h"
#include "main/product.h"

namespace driver {

namespace {

// Above are the dock, menus and what the system shows itself.
constexpr std::int64_t lastHelperLayer = 19;
constexpr double smallestHelperSide = 20;  // points

// Of the area of the largest normal window. What is smaller is a palette, which often lies in front
// of the document that it belongs to.
constexpr double mainWindowShare = 0.25;

bool isAtLeast(const Rect& frame, double side) {
  return isFinite(frame) && frame.width >= side && frame.height >= side;
}

bool belongsTo(const share::Window& window, platform::Pid pid) {
  return window.owner && window.owner->pid == pid;
}

bool isUntitled(const share::Window& window) { return window.title.value_or("").empty(); }

bool overlapsAny(const share::Window& window, const std::vector<share::Window>& others) {
  return std::any_of(others.begin(), others.end(), [&](const share::Window& other) {
    return overlap(window.frame, other.frame);
  });
}

double mainWindowThreshold(const std::vector<share::Window>& kept) {
  double largest = 0;
  for (const share::Window& window : kept) {
    if (window.layer == 0) largest = std::max(largest, area(window.frame));
  }
  return largest * mainWindowShare;
}

const share::Window* numbered(const std::vector<share::Window>& windows, std::int64_t number) {
  const auto found = std::find_if(windows.begin(), windows.end(), [&](const share::Window& window) {
    return std::int64_t{window.number} == number;
  });
  return found == windows.end() ? nullptr : &*found;
}

bool isBetterMain(const share::Window& later, const share::Window& current) {
  const bool laterIsNormal = later.layer == 0;
  const bool currentIsNormal = current.layer == 0;
  if (laterIsNormal != currentIsNormal) return laterIsNormal;
  return area(later.frame) > area(current.frame);
}

// The product's marks and covers are about the application, and no part of what it shows.
bool isOwnProduct(const share::Owner& owner) {
  return owner.bundleIdentifier.starts_with(std::string(productIdentifier) + ".");
}

bool mayBeShared(const share::Window& window, platform::Pid pid) {
  return belongsTo(window, pid) && window.layer == 0 && inScope(window.title) &&
         isAtLeast(window.frame, smallestWindowSide);
}

}  // namespace

bool overlap(const Rect& a, const Rect& b) { return intersection(a, b).has_value(); }

Rect unionOfFrames(const std::vector<share::Window>& windows) {
  Rect all = windows.front().frame;
  for (const share::Window& window : windows) all = unionOf(all, window.frame);
  return all;
}

std::vector<share::Window> keptWindows(const std::vector<share::Window>& windows,
                                       platform::Pid pid) {
  std::vector<share::Window> kept;
  std::vector<share::Window> untitled;
  for (const share::Window& window : windows) {
    if (!belongsTo(window, pid) || window.layer >= firstSystemLayer) continue;
    if (!isAtLeast(window.frame, smallestWindowSide)) continue;
    if (inScope(window.title)) {
      kept.push_back(window);
    } else if (isUntitled(window)) {
      untitled.push_back(window);
    }
  }
  // Against those in the scope alone: an untitled one keeps no other.
  std::erase_if(untitled, [&](const share::Window& window) { return !overlapsAny(window, kept); });
  kept.insert(kept.end(), untitled.begin(), untitled.end());
  return kept;
}

const share::Window& mainWindow(const std::vector<share::Window>& kept,
                                const std::vector<windowserver::Window>& frontToBack,
                                platform::Pid pid) {
  // The windows that can be shared come in any order: only the server's list says what is in front.
  const double threshold = mainWindowThreshold(kept);
  for (const windowserver::Window& entry : frontToBack) {
    if (entry.ownerPid != pid || entry.layer != 0 || !inScope(entry.name)) continue;
    const share::Window* window = entry.number ? numbered(kept, *entry.number) : nullptr;
    if (window != nullptr && area(window->frame) >= threshold) return *window;
  }
  const share::Window* best = &kept.front();
  for (const share::Window& window : kept) {
    if (isBetterMain(window, *best)) best = &window;
  }
  return *best;
}

std::optional<share::Display> displayFor(const Rect& frame,
                                         const std::vector<share::Display>& displays) {
  const auto shown = [&](const share::Display& display) {
    const std::optional<Rect> common = intersection(frame, display.frame);
    return common ? area(*common) : 0;
  };
  const auto best = std::max_element(
      displays.begin(), displays.end(),
      [&](const share::Display& a, const share::Display& b) { return shown(a) < shown(b); });
  return best == displays.end() ? std::nullopt : std::optional(*best);
}

std::vector<share::Window> helperCandidates(const std::vector<share::Window>& windows,
                                            platform::Pid pid, const Rect& area) {
  std::vector<share::Window> helpers;
  for (const share::Window& window : windows) {
    if (!window.owner || window.owner->pid == pid || isOwnProduct(*window.owner)) continue;
    // Below are the desktop and its icons.
    if (window.layer < 0 || window.layer > lastHelperLayer) continue;
    if (!isAtLeast(window.frame, smallestHelperSide) || !overlap(window.frame, area)) continue;
    helpers.push_back(window);
  }
  return helpers;
}

std::optional<std::int64_t> mainWindowNumber(const std::vector<ListedWindow>& windows) {
  double largest = 0;
  for (const ListedWindow& window : windows) {
    if (window.layer == 0) largest = std::max(largest, area(window.frame));
  }
  for (const ListedWindow& window : windows) {
    if (window.layer != 0 || area(window.frame) < largest * mainWindowShare) continue;
    return window.number;
  }
  return std::nullopt;
}

const share::Window* sharedWindow(const std::vector<share::Window>& windows,
                                  platform::WindowNumber number, platform::Pid pid) {
  const auto window =
      std::find_if(windows.begin(), windows.end(), [&](const share::Window& candidate) {
        return candidate.number == number && belongsTo(candidate, pid);
      });
  return window == windows.end() ? nullptr : &*window;
}

const share::Window* largestSharedWindow(const std::vector<share::Window>& windows,
                                         platform::Pid pid) {
  const share::Window* largest = nullptr;
  for (const share::Window& window : windows) {
    if (!mayBeShared(window, pid)) continue;
    if (largest == nullptr || area(window.frame) > area(largest->frame)) largest = &window;
  }
  return largest;
}

}  // namespace driver
