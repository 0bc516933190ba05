#include "tests/support/temporary_folder.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace testing_support {

namespace {

namespace fs = std::filesystem;

std::string colour(std::uint32_t pixel) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "#%06X%02X", pixel & 0xFFFFFF, pixel >> 24);
  return text.data();
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string pattern = testing::TempDir() + "driver-XXXXXX";
  EXPECT_NE(mkdtemp(pattern.data()), nullptr);
  path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void TemporaryFolder::write(const std::string& name, const std::string& contents) const {
  std::ofstream(path(name), std::ios::binary) << contents;
}

std::string TemporaryFolder::read(const std::string& name) const {
  std::ifstream file(path(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> TemporaryFolder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

const std::string& PictureFile::at(int x, int y) const {
  return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x));
}

PictureFile readPicture(const std::string& path) {
  PictureFile picture;
  cairo_surface_t* surface = cairo_image_surface_create_from_png(path.c_str());
  if (cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS) {
    picture.width = cairo_image_surface_get_width(surface);
    picture.height = cairo_image_surface_get_height(surface);
    const bool opaque = cairo_image_surface_get_format(surface) == CAIRO_FORMAT_RGB24;
    const unsigned char* row = cairo_image_surface_get_data(surface);
    for (int y = 0; y < picture.height; ++y, row += cairo_image_surface_get_stride(surface)) {
      for (int x = 0; x < picture.width; ++x) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, row + 4 * x, sizeof pixel);
        picture.pixels.push_back(colour(opaque ? pixel | 0xFF000000 : pixel));
      }
    }
  } else {
    ADD_FAILURE() << path << " is no picture";
  }
  cairo_surface_destroy(surface);
  return picture;
}

}  // namespace testing_support
