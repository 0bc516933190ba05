#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/drawing/png.h"

/// What differs between two pictures.
namespace companion {

/// A part of a picture, in pixels from its upper left corner.
struct Region {
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

/// The parts of `after` that are not as in `before`, which is as large: few, and none within
/// another.
std::vector<Region> changedRegions(const simulator::PixelRows& before,
                                   const simulator::PixelRows& after);

/// A part of a picture as PNG.
std::string pngOf(const simulator::PixelRows& picture, const Region& region);

}  // namespace companion
