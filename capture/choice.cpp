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

constexpr std::int64_t firstSystemLayer = 1000;
constexpr std::int64_t lastHelperLayer = 19;
constexpr double smallestWindowSide = 40;  // points
constexpr double smallestHelperSide = 20;  // points
constexpr double mainWindowShare = 0.25;   // of the largest normal window's area

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

bool isOwnProduct(const share::Owner& owner) {
  return owner.bundleIdentifier.starts_with(std::string(productIdentifier) + ".");
}

constexpr double smallestSharedSide = 40;  // points
constexpr double largeEnough = 0.25;       // of the largest area

const Value* entryOf(const Value& window, const char* key) {
  const auto* object = window.get<Value::Object>();
  if (object == nullptr) return nullptr;
  const auto entry = object->find(key);
  return entry == object->end() ? nullptr : &entry->second;
}

double numberIn(const Value& window, const char* key) {
  const Value* entry = entryOf(window, key);
  if (entry == nullptr) return 0;
  if (const auto* whole = entry->get<std::int64_t>()) return static_cast<double>(*whole);
  const auto* number = entry->get<double>();
  return number == nullptr ? 0 : *number;
}

double areaIn(const Value& window) {
  return numberIn(window, "width") * numberIn(window, "height");
}

bool isOfLayerZero(const Value& window) {
  const Value* layer = entryOf(window, "layer");
  return layer != nullptr && *layer == Value(std::int64_t{0});
}

bool mayBeShared(const share::Window& window, platform::Pid pid) {
  if (!belongsTo(window, pid) || window.layer != 0 || !inScope(window.title)) return false;
  const platform::Rect& frame = window.frame;
  return isFinite(frame) && frame.width >= smallestSharedSide && frame.height >= smallestSharedSide;
}

double areaOf(const share::Window& window) { return window.frame.width * window.frame.height; }

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
  std::erase_if(untitled, [&](const share::Window& window) { return !overlapsAny(window, kept); });
  kept.insert(kept.end(), untitled.begin(), untitled.end());
  return kept;
}

const share::Window& mainWindow(const std::vector<share::Window>& kept,
                                const std::vector<windowserver::Window>& frontToBack,
                                platform::Pid pid) {
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
  std::optional<share::Display> best;
  double bestArea = 0;
  for (const share::Display& display : displays) {
    const std::optional<Rect> common = intersection(frame, display.frame);
    const double shown = common ? area(*common) : 0;
    if (best && shown <= bestArea) continue;
    best = display;
    bestArea = shown;
  }
  return best;
}

std::vector<share::Window> helperCandidates(const std::vector<share::Window>& windows,
                                            platform::Pid pid, const Rect& area) {
  std::vector<share::Window> helpers;
  for (const share::Window& window : windows) {
    if (!window.owner || window.owner->pid == pid || isOwnProduct(*window.owner)) continue;
    if (window.layer < 0 || window.layer > lastHelperLayer) continue;
    if (!isAtLeast(window.frame, smallestHelperSide) || !overlap(window.frame, area)) continue;
    helpers.push_back(window);
  }
  return helpers;
}

std::optional<std::int64_t> mainWindowNumber(const Value::List& windows) {
  double largest = 0;
  for (const Value& window : windows) {
    if (isOfLayerZero(window)) largest = std::max(largest, areaIn(window));
  }
  for (const Value& window : windows) {
    if (!isOfLayerZero(window) || areaIn(window) < largest * largeEnough) continue;
    const Value* id = entryOf(window, "id");
    const auto* number = id == nullptr ? nullptr : id->get<std::int64_t>();
    return number == nullptr ? std::nullopt : std::optional(*number);
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
    if (largest == nullptr || areaOf(window) > areaOf(*largest)) largest = &window;
  }
  return largest;
}

}  // namespace driver
