#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <string>

namespace standins {

/// A new colour of this name, with one reference.
CGColorRef colour(std::string name);

/// A number without trailing zeros, and a rectangle as "x,y,WIDTHxHEIGHT".
std::string text(double number);
std::string text(const CGRect& rect);

}  // namespace standins
