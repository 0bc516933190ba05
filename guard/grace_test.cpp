#include "guard/grace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "main/globals.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using testing_support::Mode;
using testing_support::runInside;
using testing_support::TestMac;

TEST(grace_seconds, are_rounded_up) {
  EXPECT_EQ(secondsRoundedUp(0), 0);
  EXPECT_EQ(secondsRoundedUp(-1), 0);
  EXPECT_EQ(secondsRoundedUp(0.001), 1);
  EXPECT_EQ(secondsRoundedUp(2), 2);
  EXPECT_EQ(secondsRoundedUp(2.2), 3);
  EXPECT_EQ(secondsRoundedUp(1e300), 1'000'000'000'000);
  EXPECT_EQ(secondsRoundedUp(std::numeric_limits<double>::infinity()), 1'000'000'000'000);
  EXPECT_EQ(secondsRoundedUp(std::nan("")), 0);
}

TEST(grace_countdown, moves_on_once_a_whole_second_and_once_at_least) {
  EXPECT_EQ(countdownSteps(0.2), 1);
  EXPECT_EQ(countdownSteps(1), 1);
  EXPECT_EQ(countdownSteps(1.9), 1);
  EXPECT_EQ(countdownSteps(2.5), 2);
  EXPECT_EQ(countdownSteps(10), 10);
  EXPECT_EQ(countdownSteps(1e300), 1'000'000'000'000);
}

TEST(grace_time, passes_with_both_clocks) {
  TestMac mac("", {}, Mode::direct);
  runInside(mac,
            [&] {
              startGrace();
              ASSERT_TRUE(hasGrace());
              mac.desktop().advanceTo(4'000'000);
              EXPECT_EQ(graceSecondsLeft(), 6);
              mac.desktop().advanceTo(10'000'000);
              EXPECT_EQ(graceTime().left, 0);
              EXPECT_EQ(graceSecondsLeft(), 0);
            },
            {{"ZENTROVE_COVER_GRACE", "10"}});
}

TEST(grace_time, is_over_when_the_machine_has_slept_past_its_end) {
  TestMac mac("", {}, Mode::direct);
  runInside(mac,
            [] {
              startGrace();
              // By the date an hour has gone, in which the machine was not awake.
              *globals().guardGraceUntil -= 3600;
              EXPECT_LT(graceTime().left, 0);
            },
            {{"ZENTROVE_COVER_GRACE", "10"}});
}

TEST(grace_time, is_no_longer_when_the_date_is_set_back) {
  TestMac mac("", {}, Mode::direct);
  runInside(mac,
            [&] {
              startGrace();
              *globals().guardGraceUntil += 3600;
              mac.desktop().advanceTo(10'000'000);
              EXPECT_EQ(graceTime().left, 0);
            },
            {{"ZENTROVE_COVER_GRACE", "10"}});
}

TEST(grace_time, is_none_without_a_grace) {
  TestMac mac("", {}, Mode::direct);
  runInside(mac, [] {
    startGrace();
    EXPECT_FALSE(hasGrace());
    EXPECT_EQ(graceSecondsLeft(), 0);
  });
}

}  // namespace
}  // namespace driver
