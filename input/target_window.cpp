#include "input/target_window.h"

#include <cstdint>
#include <utility>

#include "accessibility/scope.h"
#include "base/geometry.h"
#include "main/state_queries.h"

namespace driver {

namespace {

// One without a title may be a sheet or a popup of a window within the scope: it is not filtered.
bool mayBeOperated(const windowserver::Window& window) {
  if (window.layer.value_or(0) >= firstSystemLayer) return false;
  return window.name.value_or("").empty() || inScope(window.name);
}

}  // namespace

std::optional<platform::WindowNumber> numberOf(const windowserver::Window& window) {
  const std::int64_t number = window.number.value_or(0);
  if (number == 0 || !std::in_range<platform::WindowNumber>(number)) return std::nullopt;
  return static_cast<platform::WindowNumber>(number);
}

std::optional<Rect> boundsOf(const windowserver::Window& window) {
  if (!window.x || !window.y || !window.width || !window.height) return std::nullopt;
  const Rect bounds{*window.x, *window.y, *window.width, *window.height};
  return isFinite(bounds) ? std::optional(bounds) : std::nullopt;
}

std::optional<TargetWindow> windowAt(platform::Pid pid, Point point) {
  const auto list = windowserver::windows(windowserver::Windows::onScreenWithoutDesktop);
  if (!list) return std::nullopt;
  for (const windowserver::Window& window : *list) {
    if (window.ownerPid != pid || !mayBeOperated(window)) continue;
    const std::optional<Rect> bounds = boundsOf(window);
    if (!bounds || !contains(*bounds, point)) continue;
    const std::optional<platform::WindowNumber> number = numberOf(window);
    // The window behind it is no substitute for one that cannot be named.
    return number ? std::optional(TargetWindow{*number, *bounds}) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace driver
