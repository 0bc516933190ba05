#include "simulator/drawing/png.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

using simulator::encodedPng;

namespace {

struct Reader {
  std::string bytes;
  std::size_t read = 0;
};

cairo_status_t readFrom(void* reader, unsigned char* data, unsigned int length) {
  auto& from = *static_cast<Reader*>(reader);
  if (from.bytes.size() - from.read < length) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, from.bytes.data() + from.read, length);
  from.read += length;
  return CAIRO_STATUS_SUCCESS;
}

/// The colours, row by row, as 0xRRGGBB.
std::vector<std::uint32_t> coloursOf(const std::string& png) {
  Reader reader{png};
  cairo_surface_t* surface = cairo_image_surface_create_from_png_stream(readFrom, &reader);
  std::vector<std::uint32_t> colours;
  for (int y = 0; y < cairo_image_surface_get_height(surface); ++y) {
    for (int x = 0; x < cairo_image_surface_get_width(surface); ++x) {
      std::uint32_t pixel = 0;
      std::memcpy(&pixel,
                  cairo_image_surface_get_data(surface) +
                      y * cairo_image_surface_get_stride(surface) + 4 * x,
                  sizeof pixel);
      colours.push_back(pixel & 0xFFFFFF);
    }
  }
  cairo_surface_destroy(surface);
  return colours;
}

TEST(encodedPng, is_read_back_as_it_was_drawn) {
  // Two rows of two pixels, with four bytes between the rows that belong to nobody.
  const std::array<unsigned char, 24> bytes{1, 2, 3, 0,  4,  5,  6,  9, 0xEE, 0xEE, 0xEE, 0xEE,
                                            7, 8, 9, 99, 10, 11, 12, 1, 0xEE, 0xEE, 0xEE, 0xEE};
  const std::vector<std::uint32_t> colours{0x030201, 0x060504, 0x090807, 0x0C0B0A};
  EXPECT_EQ(coloursOf(encodedPng({bytes.data(), 12, 2, 2})), colours);
}

TEST(encodedPng, has_no_alpha_and_says_what_it_is) {
  const std::array<unsigned char, 4> black{};
  const std::string png = encodedPng({black.data(), 4, 1, 1});
  // Behind the signature and the name of the header: width, height, depth, kind "truecolour".
  EXPECT_EQ(png.substr(16, 10), std::string("\0\0\0\1\0\0\0\1\x08\x02", 10));
}

}  // namespace
