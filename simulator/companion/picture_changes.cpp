#include "simulator/companion/picture_changes.h"

#include <algorithm>
#include <cstring>

namespace companion {

namespace {

/// Pixels that differ in one square, or in two that touch, are of one region.
constexpr int squareSize = 16;

/// More regions than these say no more than one that holds them all.
constexpr std::size_t regionsMax = 24;

constexpr std::size_t bytesPerPixel = 4;

Region unionOf(const Region& a, const Region& b) {
  const int x = std::min(a.x, b.x);
  const int y = std::min(a.y, b.y);
  return {x, y, std::max(a.x + a.width, b.x + b.width) - x,
          std::max(a.y + a.height, b.y + b.height) - y};
}

/// Whether two regions overlap, or lie within a square of each other.
bool touch(const Region& a, const Region& b) {
  return a.x <= b.x + b.width + squareSize && b.x <= a.x + a.width + squareSize &&
         a.y <= b.y + b.height + squareSize && b.y <= a.y + a.height + squareSize;
}

/// The pixels of a square that differ, as tightly as can be; of no width when none does.
Region changeIn(const PixelPicture& before, const PixelPicture& after, int left, int top) {
  Region found;
  const int right = std::min(left + squareSize, after.width());
  for (int y = top; y < std::min(top + squareSize, after.height()); ++y) {
    if (!after.mayDiffer(before, left, y, right - left)) continue;
    for (int x = left; x < right; ++x) {
      if (!after.differsAt(before, x, y)) continue;
      const Region pixel{x, y, 1, 1};
      found = found.width == 0 ? pixel : unionOf(found, pixel);
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

cairo_status_t append(void* text, const unsigned char* bytes, unsigned int length) {
  static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), length);
  return CAIRO_STATUS_SUCCESS;
}

cairo_status_t take(void* text, unsigned char* bytes, unsigned int length) {
  auto& left = *static_cast<std::string_view*>(text);
  if (left.size() < length) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(bytes, left.data(), length);
  left.remove_prefix(length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

std::optional<PixelPicture> PixelPicture::fromPng(std::string_view bytes) {
  Surface stored(cairo_image_surface_create_from_png_stream(take, &bytes));
  if (cairo_surface_status(stored.get()) != CAIRO_STATUS_SUCCESS) return std::nullopt;
  // Whatever the file has, here it is four bytes for a pixel.
  const int width = cairo_image_surface_get_width(stored.get());
  const int height = cairo_image_surface_get_height(stored.get());
  Surface plain(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
  cairo_t* context = cairo_create(plain.get());
  cairo_set_source_surface(context, stored.get(), 0, 0);
  cairo_paint(context);
  cairo_destroy(context);
  cairo_surface_flush(plain.get());
  return PixelPicture(std::move(plain));
}

const unsigned char* PixelPicture::pixel(int x, int y) const {
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface_.get()));
  return cairo_image_surface_get_data(surface_.get()) + static_cast<std::size_t>(y) * stride +
         static_cast<std::size_t>(x) * bytesPerPixel;
}

bool PixelPicture::mayDiffer(const PixelPicture& other, int x, int y, int count) const {
  const std::size_t length = static_cast<std::size_t>(count) * bytesPerPixel;
  return std::memcmp(pixel(x, y), other.pixel(x, y), length) != 0;
}

bool PixelPicture::differsAt(const PixelPicture& other, int x, int y) const {
  return std::memcmp(pixel(x, y), other.pixel(x, y), bytesPerPixel - 1) != 0;
}

std::string PixelPicture::png(const Region& region) const {
  const Surface part(cairo_image_surface_create(CAIRO_FORMAT_RGB24, region.width, region.height));
  cairo_t* context = cairo_create(part.get());
  cairo_set_source_surface(context, surface_.get(), -region.x, -region.y);
  cairo_paint(context);
  cairo_destroy(context);
  std::string bytes;
  cairo_surface_write_to_png_stream(part.get(), append, &bytes);
  return bytes;
}

std::vector<Region> changedRegions(const PixelPicture& before, const PixelPicture& after) {
  std::vector<Region> regions;
  for (int y = 0; y < after.height(); y += squareSize) {
    for (int x = 0; x < after.width(); x += squareSize) {
      const Region change = changeIn(before, after, x, y);
      if (change.width > 0) add(regions, change);
    }
  }
  if (regions.size() <= regionsMax) return regions;
  Region all = regions.front();
  for (const Region& region : regions) all = unionOf(all, region);
  return {all};
}

}  // namespace companion
