#include "capture/pixels.h"

namespace driver {

namespace {

constexpr std::uint64_t longestSide = 16'384;

}  // namespace

std::uint64_t pixelCount(double side) {
  if (side >= static_cast<double>(longestSide)) return longestSide;
  return side >= 1 ? static_cast<std::uint64_t>(side) : 1;
}

}  // namespace driver
