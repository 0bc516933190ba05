#include "base/geometry.h"

#include <algorithm>
#include <cmath>

namespace driver {

bool isFinite(const Rect& rect) {
  return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
         std::isfinite(rect.height);
}

bool contains(const Rect& rect, Point point) {
  return point.x >= rect.x && point.x < rect.x + rect.width && point.y >= rect.y &&
         point.y < rect.y + rect.height;
}

double area(const Rect& rect) {
  return rect.width > 0 && rect.height > 0 ? rect.width * rect.height : 0;
}

std::optional<Rect> intersection(const Rect& a, const Rect& b) {
  // The minimum of a number and a NaN may be either.
  if (!isFinite(a) || !isFinite(b)) return std::nullopt;
  const double left = std::max(a.x, b.x);
  const double top = std::max(a.y, b.y);
  const double right = std::min(a.x + a.width, b.x + b.width);
  const double bottom = std::min(a.y + a.height, b.y + b.height);
  if (right <= left || bottom <= top) return std::nullopt;
  return Rect{left, top, right - left, bottom - top};
}

Rect unionOf(const Rect& a, const Rect& b) {
  const double left = std::min(a.x, b.x);
  const double top = std::min(a.y, b.y);
  const double right = std::max(a.x + a.width, b.x + b.width);
  const double bottom = std::max(a.y + a.height, b.y + b.height);
  return {left, top, right - left, bottom - top};
}

}  // namespace driver
