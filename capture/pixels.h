#pragma once

#include <cstdint>

namespace driver {

/// A picture's side in whole pixels: the integer part, at least 1 and at most 16,384 (the longest
/// side of a picture on this hardware). 1 for what is not a number.
std::uint64_t pixelCount(double side);

}  // namespace driver
