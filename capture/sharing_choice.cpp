#include "capture/sharing_choice.h"

#include <algorithm>

#include "accessibility/scope.h"
#include "base/geometry.h"

namespace driver {

namespace {

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

bool belongsTo(const share::Window& window, platform::Pid pid) {
  return window.owner && window.owner->pid == pid;
}

bool mayBeShared(const share::Window& window, platform::Pid pid) {
  if (!belongsTo(window, pid) || window.layer != 0 || !inScope(window.title)) return false;
  const platform::Rect& frame = window.frame;
  return isFinite(frame) && frame.width >= smallestSharedSide && frame.height >= smallestSharedSide;
}

double areaOf(const share::Window& window) { return window.frame.width * window.frame.height; }

}  // namespace

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
