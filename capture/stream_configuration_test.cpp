#include "capture/background_capture_indicator.h"

#include <gtest/gtest.h>

#include <limits>

namespace driver {
namespace {

using Pixels = std::pair<std::uint64_t, std::uint64_t>;

Pixels pixelsFor(double width, double height) {
  const auto configuration = streamConfiguration({10, 20, width, height}, {14, 2});
  return {configuration.width, configuration.height};
}

TEST(stream_configuration, scales_the_longer_side_to_640_pixels_at_most) {
  EXPECT_EQ(pixelsFor(1000, 500), Pixels(640, 320));
  EXPECT_EQ(pixelsFor(500, 1000), Pixels(320, 640));
  EXPECT_EQ(pixelsFor(300, 200), Pixels(300, 200));
  EXPECT_EQ(pixelsFor(640, 640), Pixels(640, 640));
  EXPECT_EQ(pixelsFor(640.5, 320.5), Pixels(640, 320));
  EXPECT_EQ(pixelsFor(300.9, 200.1), Pixels(300, 200));
}

TEST(stream_configuration, is_never_below_2_by_2_pixels) {
  EXPECT_EQ(pixelsFor(0.5, 0.5), Pixels(2, 2));
  EXPECT_EQ(pixelsFor(6400, 1), Pixels(640, 2));
  EXPECT_EQ(pixelsFor(0, 0), Pixels(2, 2));
  EXPECT_EQ(pixelsFor(-5, 100), Pixels(2, 100));
}

TEST(stream_configuration, of_a_frame_that_is_no_frame_is_the_smallest) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(pixelsFor(nan, 100), Pixels(2, 2));
  EXPECT_EQ(pixelsFor(infinity, 100), Pixels(2, 2));
}

TEST(stream_configuration, is_cheap_and_named) {
  const auto configuration = streamConfiguration({0, 0, 100, 100}, {14, 2});
  EXPECT_EQ(configuration.frameIntervalSeconds, 1);
  EXPECT_EQ(configuration.queueDepth, 3);
  EXPECT_EQ(configuration.name, "Zentrove Desk \u00b7 background operation in this window");
}

TEST(stream_configuration, asks_for_child_windows_where_the_system_knows_them) {
  const auto asks = [](process::Version version) {
    return streamConfiguration({0, 0, 100, 100}, version).includesChildWindows;
  };
  EXPECT_FALSE(asks({14, 0}));
  EXPECT_FALSE(asks({14, 1}));
  EXPECT_TRUE(asks({14, 2}));
  EXPECT_TRUE(asks({15, 0}));
}

}  // namespace
}  // namespace driver
