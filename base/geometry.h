#pragma once

#include <optional>

namespace driver {

/// A location in points. Unless said otherwise: global display space, origin at the top left of the
/// main display, y downwards.
struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

/// An extent in points.
struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

/// A rectangle in points, in the space of its Point. Width and height are taken as given; one that
/// is not positive, or has a value that is not a number, is empty and contains nothing.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// True when all four values are finite.
bool isFinite(const Rect& rect);

/// True when `point` lies inside; the right and bottom edges do not belong to the rectangle.
bool contains(const Rect& rect, Point point);

/// Width times height; 0 for an empty rectangle.
double area(const Rect& rect);

/// The common part of two rectangles; none when they share no area (touching edges share none), or
/// when one is not finite.
std::optional<Rect> intersection(const Rect& a, const Rect& b);

/// The smallest rectangle that holds both.
Rect unionOf(const Rect& a, const Rect& b);

}  // namespace driver
