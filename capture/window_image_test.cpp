#include "capture/window_image.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace {

using namespace testing_support;

constexpr const char* windowImageDesk = R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 801x600.5
            AXCheckBox "Done" at 120,130 size 60x20 value 0
        window 8 at 0,0 size 1.5x0.5
        window 9 at nan,0 size 10x10
        window 10 at 0,0 size 100000x10
        window 11 at 0,0 size 10x10 not-capturable
        window 12 at 0,0 size 10x10 off-screen
)";

std::optional<std::string> imageOf(TestMac& mac, platform::WindowNumber number) {
  return valueInside(mac, [&] { return driver::windowImage(number); });
}

std::string screenshot(const TestMac& mac) {
  const std::string call = callsOf(mac, platform::Function::screenshot).at(0);
  return call.substr(0, call.find(" ->"));
}

TEST(windowImage, is_the_window_alone_at_half_size_desktop_windows_included) {
  TestMac mac(windowImageDesk);

  EXPECT_TRUE(imageOf(mac, 7).has_value());

  EXPECT_EQ(callsOf(mac, platform::Function::shareContent).at(0).substr(0, 15), "share.content 0");
  EXPECT_EQ(screenshot(mac), "share.screenshot [0 0 [7]] [400 300 - -]");
}

TEST(windowImage, is_at_least_one_pixel_wide_and_high) {
  TestMac mac(windowImageDesk);

  EXPECT_TRUE(imageOf(mac, 8).has_value());

  EXPECT_EQ(screenshot(mac), "share.screenshot [0 0 [8]] [1 1 - -]");
}

TEST(windowImage, is_no_longer_than_the_hardware_allows) {
  TestMac mac(windowImageDesk);

  EXPECT_TRUE(imageOf(mac, 10).has_value());

  EXPECT_EQ(screenshot(mac), "share.screenshot [0 0 [10]] [16384 5 - -]");
}

TEST(windowImage, of_what_is_not_on_screen_or_cannot_be_captured_is_none) {
  for (const platform::WindowNumber number : {9U, 11U, 12U, 99U, 0U}) {
    SCOPED_TRACE(number);
    TestMac mac(windowImageDesk);

    EXPECT_FALSE(imageOf(mac, number).has_value());
    EXPECT_TRUE(callsOf(mac, platform::Function::screenshot).empty());
  }
}

TEST(windowImage, that_the_system_refuses_is_none) {
  for (const char* fault :
       {"share.content 1 thrown", "share.screenshot 1 thrown", "image.pixels 1 absent"}) {
    SCOPED_TRACE(fault);
    TestMac mac(windowImageDesk, {fault});

    EXPECT_FALSE(imageOf(mac, 7).has_value());
  }
}

TEST(windowImage, differs_exactly_when_the_window_changed) {
  TestMac mac(windowImageDesk);

  const auto before = imageOf(mac, 7);
  const auto again = imageOf(mac, 7);
  mac.desktop().mac().world.applications[0].elements[1].attributes["AXValue"] = std::int64_t{1};
  const auto after = imageOf(mac, 7);

  EXPECT_EQ(before, again);
  EXPECT_NE(before, after);
}

}  // namespace
