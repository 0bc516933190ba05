#include "base/geometry.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace driver {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

/// A rectangle with each of its four values in turn replaced by `value`.
std::vector<Rect> withOne(double value) {
  return {{value, 1, 2, 3}, {1, value, 2, 3}, {1, 2, value, 3}, {1, 2, 3, value}};
}

TEST(isFinite, needs_four_finite_values) {
  EXPECT_TRUE(isFinite({0, 0, 0, 0}));
  EXPECT_TRUE(isFinite({-1e308, 1e308, -5, 1e-320}));
  for (const double value : {nan, infinite, -infinite}) {
    for (const Rect& rect : withOne(value)) EXPECT_FALSE(isFinite(rect));
  }
}

TEST(contains, takes_the_left_and_top_edges_and_not_the_others) {
  const Rect rect{10, 20, 30, 40};
  EXPECT_TRUE(contains(rect, {10, 20}));
  EXPECT_TRUE(contains(rect, {39.999, 59.999}));
  EXPECT_FALSE(contains(rect, {40, 30}));
  EXPECT_FALSE(contains(rect, {20, 60}));
  EXPECT_FALSE(contains(rect, {9.999, 30}));
  EXPECT_FALSE(contains(rect, {20, 19.999}));
}

TEST(contains, holds_on_displays_left_of_and_above_the_main_one) {
  EXPECT_TRUE(contains({-300, -200, 100, 100}, {-300, -200}));
  EXPECT_FALSE(contains({-300, -200, 100, 100}, {-200, -150}));
}

TEST(contains, is_false_for_an_empty_rectangle) {
  EXPECT_FALSE(contains({10, 20, 0, 40}, {10, 20}));
  EXPECT_FALSE(contains({10, 20, 30, 0}, {10, 20}));
  EXPECT_FALSE(contains({10, 20, -5, 40}, {8, 30}));
  EXPECT_FALSE(contains({10, 20, -5, 40}, {10, 30}));
}

TEST(contains, is_false_for_what_is_not_a_number) {
  for (const Rect& rect : withOne(nan)) EXPECT_FALSE(contains(rect, {1, 2}));
  EXPECT_FALSE(contains({0, 0, 10, 10}, {nan, 5}));
  EXPECT_FALSE(contains({0, 0, 10, 10}, {5, nan}));
  EXPECT_FALSE(contains({0, 0, 10, 10}, {infinite, 5}));
  EXPECT_FALSE(contains({0, 0, 10, 10}, {-infinite, 5}));
}

TEST(area, is_width_times_height) {
  EXPECT_EQ(area({5, 5, 3, 4}), 12);
  EXPECT_EQ(area({5, 5, 0.5, 0.5}), 0.25);
}

TEST(area, of_an_empty_rectangle_is_zero) {
  EXPECT_EQ(area({0, 0, 0, 4}), 0);
  EXPECT_EQ(area({0, 0, -3, -4}), 0);
  EXPECT_EQ(area({0, 0, nan, 4}), 0);
  EXPECT_EQ(area({0, 0, 3, nan}), 0);
}

TEST(intersection, is_the_common_part) {
  EXPECT_EQ(intersection({0, 0, 10, 10}, {5, 6, 10, 10}), (Rect{5, 6, 5, 4}));
  EXPECT_EQ(intersection({5, 6, 10, 10}, {0, 0, 10, 10}), (Rect{5, 6, 5, 4}));
  EXPECT_EQ(intersection({0, 0, 10, 10}, {2, 3, 4, 5}), (Rect{2, 3, 4, 5}));
  EXPECT_EQ(intersection({-10, -10, 15, 15}, {0, 0, 1, 9}), (Rect{0, 0, 1, 5}));
}

TEST(intersection, of_rectangles_that_share_no_area_is_none) {
  EXPECT_EQ(intersection({0, 0, 10, 10}, {10, 0, 10, 10}), std::nullopt);
  EXPECT_EQ(intersection({0, 0, 10, 10}, {0, 10, 10, 10}), std::nullopt);
  EXPECT_EQ(intersection({0, 0, 10, 10}, {50, 50, 1, 1}), std::nullopt);
  EXPECT_EQ(intersection({0, 0, 10, 10}, {5, 5, 0, 5}), std::nullopt);
  EXPECT_EQ(intersection({0, 0, 10, 10}, {5, 5, -2, 5}), std::nullopt);
}

TEST(intersection, with_a_rectangle_that_is_not_finite_is_none) {
  for (const double value : {nan, infinite}) {
    for (const Rect& rect : withOne(value)) {
      EXPECT_EQ(intersection(rect, {0, 0, 10, 10}), std::nullopt);
      EXPECT_EQ(intersection({0, 0, 10, 10}, rect), std::nullopt);
    }
  }
}

TEST(unionOf, is_the_smallest_rectangle_that_holds_both) {
  EXPECT_EQ(unionOf({0, 0, 10, 10}, {20, 30, 5, 5}), (Rect{0, 0, 25, 35}));
  EXPECT_EQ(unionOf({-5, -6, 1, 1}, {0, 0, 2, 2}), (Rect{-5, -6, 7, 8}));
  EXPECT_EQ(unionOf({0, 0, 10, 10}, {2, 2, 3, 3}), (Rect{0, 0, 10, 10}));
}

}  // namespace
}  // namespace driver
