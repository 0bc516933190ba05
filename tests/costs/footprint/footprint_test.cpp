#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "tests/costs/footprint/measure.h"

/// What walks through large trees take from the free store, beside what the seam gives them.
namespace {

using footprint::Measure;
using footprint::measured;
using footprint::Shape;

constexpr std::size_t small = 1'000;
constexpr std::size_t large = 20'000;

/// A command that walks and finds nothing to report, and how many texts of each element it makes:
/// in a quarter of them, the label and the label as it is compared.
struct Walking {
  const char* line;
  double texts;
};

constexpr Walking walks[] = {{"ax-find-text Notes Nothing", 0},
                             {"ax-texts-at Notes 900 900", 0},
                             {"ax-match Notes Nothing -1 -1", 0.5},
                             {"ax-press-exact Notes Nothing", 0.5},
                             {"ax-press-in-document Notes Chat Send", 0},
                             {"ax-focused Notes", 0},
                             {"ax-modal Notes", 0},
                             {"ax-popup-items Notes", 0},
                             {"ax-slider Notes Size", 0}};

double perElement(std::size_t atSmall, std::size_t atLarge) {
  return (static_cast<double>(atLarge) - static_cast<double>(atSmall)) / (large - small);
}

class footprint_of_walks : public testing::TestWithParam<Shape> {};

TEST_P(footprint_of_walks, is_two_allocations_and_64_bytes_for_each_element) {
  for (const Walking& walk : walks) {
    SCOPED_TRACE(walk.line);
    const Measure few = measured(walk.line, GetParam(), small);
    const Measure many = measured(walk.line, GetParam(), large);
    EXPECT_EQ(many.messages - few.messages, large - small);
    EXPECT_LE(perElement(few.allocations, many.allocations), 2 + walk.texts);
    EXPECT_LE(perElement(few.peakBytes, many.peakBytes), 64);
    // The work grows as the tree does.
    const double growth =
        std::log(static_cast<double>(many.allocations) / static_cast<double>(few.allocations)) /
        std::log(static_cast<double>(large) / small);
    EXPECT_LE(growth, 1.02);
  }
}

INSTANTIATE_TEST_SUITE_P(shapes, footprint_of_walks,
                         testing::Values(Shape::wide, Shape::deep, Shape::bushy));

TEST(a_million_children, are_walked_to_the_limits_of_each_command) {
  constexpr std::size_t million = 1'000'000;
  constexpr std::size_t aroundTheWalk = 5;
  for (const char* line :
       {"ax-list Notes", "ax-dump Notes", "ax-find-text Notes Nothing", "ax-texts-at Notes 900 900",
        "ax-match Notes Nothing -1 -1", "ax-press-match Notes Nothing -1 -1",
        "ax-press-exact Notes Nothing", "ax-press-exact Notes Nothing only Nowhere",
        "ax-press-child Notes Nothing last", "ax-press-in-document Notes Chat Send",
        "ax-insert Notes Nothing -1 -1 end x", "ax-focus Notes Nothing -1 -1", "ax-focused Notes",
        "ax-modal Notes", "ax-modal-press Notes x y", "ax-popup-items Notes",
        "ax-slider Notes Size"}) {
    SCOPED_TRACE(line);
    const Measure run = measured(line, Shape::wide, million);
    EXPECT_EQ(run.reply.find("\"ok\":") == std::string::npos, false) << run.reply.substr(0, 200);
    EXPECT_EQ(std::count(run.reply.begin(), run.reply.end(), '\n'), 1);
    EXPECT_LE(run.messages, 30'000 + aroundTheWalk);
    // A handle for each child, and what is shown.
    EXPECT_LE(run.peakBytes, million * 24 + 6'000'000);
  }
}

TEST(footprint_of_searches_for_controls, is_a_handle_for_each_child_that_lies_too_deep) {
  for (const char* line : {"ax-match Notes Nothing -1 -1", "ax-popup-items Notes"}) {
    SCOPED_TRACE(line);
    const Measure few = measured(line, Shape::fringe, small);
    const Measure many = measured(line, Shape::fringe, large);
    EXPECT_EQ(many.messages, few.messages);
    EXPECT_LE(perElement(few.peakBytes, many.peakBytes), 24);
  }
}

TEST(footprint_of_stairs, is_bounded_by_what_may_still_be_visited) {
  // Each step leaves ten thousand elements behind, of which all but a few are out of reach.
  for (const char* line : {"ax-match Notes Nothing -1 -1", "ax-find-text Notes Nothing"}) {
    SCOPED_TRACE(line);
    EXPECT_LE(measured(line, Shape::stairs, 400'000).peakBytes, 6'000'000);
  }
}

TEST(footprint_of_find_text, does_not_grow_with_what_it_finds) {
  // All the texts together in one reply would be some 500 kB.
  const Measure few = measured("ax-find-text Notes tttt bbbb", Shape::bushy, small);
  const Measure many = measured("ax-find-text Notes tttt bbbb", Shape::bushy, large);
  EXPECT_LE(perElement(few.peakBytes, many.peakBytes), 1);
}

}  // namespace
