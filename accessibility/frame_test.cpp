#include <gtest/gtest.h>

#include "accessibility/element.h"
#include "platform/simulated/values.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

/// The frame of an element, which is written as in a world's text.
std::optional<Rect> frameOf(const std::string& element, std::vector<std::string> faults = {}) {
  TestMac mac(
      "app Notes pid 41\n    window 7 \"W\" at 0,0 size 99x99\n        AXGroup " + element + "\n",
      std::move(faults));
  return valueInside(mac, [] { return axFrame(simulated::makeElement({41, 2})); });
}

TEST(axFrame, is_made_of_position_and_size) {
  EXPECT_EQ(frameOf("at 120.5,-90 size 60x20"), (Rect{120.5, -90, 60, 20}));
}

TEST(axFrame, may_be_empty) {
  EXPECT_EQ(frameOf("at 120,90 size 0x0"), (Rect{120, 90, 0, 0}));
  EXPECT_EQ(frameOf("at 120,90 size -5x20"), (Rect{120, 90, -5, 20}));
}

TEST(axFrame, is_absent_when_either_part_cannot_be_read) {
  EXPECT_EQ(frameOf(""), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 failing AXPosition -25212"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 failing AXSize -25212"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4", {"ax.attributes 1 error -25202"}), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4", {"ax.attributes 1 hang"}), std::nullopt);
}

TEST(axFrame, is_absent_when_either_part_is_no_geometry) {
  EXPECT_EQ(frameOf(R"(at 1,2 size 3x4 attribute AXPosition "1,2")"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 attribute AXPosition size 1x2"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 attribute AXSize point 3,4"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 attribute AXSize opaque 7"), std::nullopt);
}

TEST(axFrame, is_absent_when_it_is_not_finite) {
  for (const char* position : {"nan,2", "1,nan", "inf,2", "1,-inf"}) {
    EXPECT_EQ(frameOf(std::string("at 1,2 size 3x4 attribute AXPosition point ") + position),
              std::nullopt)
        << position;
  }
  for (const char* size : {"nanx4", "3xnan", "infx4", "3x-inf"}) {
    EXPECT_EQ(frameOf(std::string("at 1,2 size 3x4 attribute AXSize size ") + size), std::nullopt)
        << size;
  }
}

TEST(axFrame, keeps_finite_values_however_large) {
  EXPECT_EQ(frameOf("at 1e308,-1e308 size 1e308x1"), (Rect{1e308, -1e308, 1e308, 1}));
}

TEST(axFrame, takes_one_round_trip) {
  TestMac mac("app Notes pid 41\n    window 7 \"W\" at 0,0 size 99x99\n");
  EXPECT_EQ(runInside(mac,
                      [] {
                        axFrame(simulated::makeElement({41, 1}));
                      })
                .calls,
            std::vector<std::string>{"ax.attributes"});
}

}  // namespace
}  // namespace driver
