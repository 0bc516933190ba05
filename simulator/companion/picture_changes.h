#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <cairo.h>

/// What differs between two pictures.
namespace companion {

/// A part of a picture, in pixels from its upper left corner.
struct Region {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// A picture with its pixels.
class PixelPicture {
 public:
  /// None when the bytes are no PNG.
  static std::optional<PixelPicture> fromPng(std::string_view bytes);

  int width() const { return cairo_image_surface_get_width(surface_.get()); }
  int height() const { return cairo_image_surface_get_height(surface_.get()); }

  /// The whole of it.
  Region all() const { return {0, 0, width(), height()}; }

  /// Whether any of so many pixels from this one on to the right may be another one in `other`,
  /// which is as large; and whether this one is.
  bool mayDiffer(const PixelPicture& other, int x, int y, int count) const;
  bool differsAt(const PixelPicture& other, int x, int y) const;

  /// A part of it as PNG.
  std::string png(const Region& region) const;

 private:
  struct Release {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };
  using Surface = std::unique_ptr<cairo_surface_t, Release>;

  explicit PixelPicture(Surface surface) : surface_(std::move(surface)) {}
  const unsigned char* pixel(int x, int y) const;

  Surface surface_;
};

/// The parts of `after` that are not as in `before`, which is as large: few, and none within
/// another.
std::vector<Region> changedRegions(const PixelPicture& before, const PixelPicture& after);

}  // namespace companion
