#include "simulator/companion/picture_changes.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace companion {

namespace {

using simulator::PixelRows;

/// Pixels that differ in one square, or in two that touch, are of one region.
constexpr std::uint32_t squareSize = 16;

/// More regions than these say no more than one that holds them all.
constexpr std::size_t regionsMax = 24;

constexpr std::size_t bytesPerPixel = 4;
constexpr std::size_t coloursPerPixel = 3;

const unsigned char* pixel(const PixelRows& picture, std::uint32_t x, std::uint32_t y) {
  return picture.first + static_cast<std::ptrdiff_t>(y) * picture.stride + x * bytesPerPixel;
}

Region unionOf(const Region& a, const Region& b) {
  const std::uint32_t x = std::min(a.x, b.x);
  const std::uint32_t y = std::min(a.y, b.y);
  return {x, y, std::max(a.x + a.width, b.x + b.width) - x,
          std::max(a.y + a.height, b.y + b.height) - y};
}

/// Whether two regions overlap, or lie within a square of each other.
bool touch(const Region& a, const Region& b) {
  return a.x <= b.x + b.width + squareSize && b.x <= a.x + a.width + squareSize &&
         a.y <= b.y + b.height + squareSize && b.y <= a.y + a.height + squareSize;
}

/// The pixels of a square that differ, as tightly as can be; of no width when none does.
Region changeIn(const PixelRows& before, const PixelRows& after, std::uint32_t left,
                std::uint32_t top) {
  Region found;
  const std::uint32_t right = std::min(left + squareSize, after.width);
  for (std::uint32_t y = top; y < std::min(top + squareSize, after.height); ++y) {
    const std::size_t length = (right - left) * bytesPerPixel;
    if (std::memcmp(pixel(before, left, y), pixel(after, left, y), length) == 0) continue;
    for (std::uint32_t x = left; x < right; ++x) {
      if (std::memcmp(pixel(before, x, y), pixel(after, x, y), coloursPerPixel) == 0) continue;
      const Region one{x, y, 1, 1};
      found = found.width == 0 ? one : unionOf(found, one);
    }
  }
  return found;
}

/// Adds a region, together with all that it touches.
void add(std::vector<Region>& regions, Region region) {
  for (auto each = regions.begin(); each != regions.end();) {
    if (!touch(*each, region)) {
      ++each;
      continue;
    }
    region = unionOf(*each, region);
    regions.erase(each);
    each = regions.begin();
  }
  regions.push_back(region);
}

}  // namespace

std::vector<Region> changedRegions(const PixelRows& before, const PixelRows& after) {
  std::vector<Region> regions;
  for (std::uint32_t y = 0; y < after.height; y += squareSize) {
    for (std::uint32_t x = 0; x < after.width; x += squareSize) {
      const Region change = changeIn(before, after, x, y);
      if (change.width > 0) add(regions, change);
    }
  }
  if (regions.size() <= regionsMax) return regions;
  Region all = regions.front();
  for (const Region& region : regions) all = unionOf(all, region);
  return {all};
}

std::string pngOf(const PixelRows& picture, const Region& region) {
  return simulator::encodedPng(
      {pixel(picture, region.x, region.y), picture.stride, region.width, region.height});
}

}  // namespace companion
