#include "input/input_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>

#include "tests/support/tap_events.h"

namespace driver {
namespace {

using quartz::EventType;
using testing_support::eventOf;
using testing_support::keyDown;

constexpr std::uint64_t shiftFlag = 0x20000;
constexpr std::uint64_t commandFlag = 0x100000;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

tap::Event moved(std::int64_t deltaX, std::int64_t deltaY) {
  tap::Event made = eventOf(EventType::mouseMoved);
  made.deltaX = deltaX;
  made.deltaY = deltaY;
  return made;
}

TEST(watched_input, is_of_nine_types) {
  EXPECT_EQ(watchedMask, 0x24014EAU);
  std::set<std::uint32_t> types;
  for (const EventType type : watchedTypes) types.insert(static_cast<std::uint32_t>(type));
  EXPECT_EQ(types, (std::set<std::uint32_t>{1, 3, 5, 6, 7, 10, 12, 22, 25}));
}

TEST(watched_input, is_no_notice_that_the_tap_is_disabled) {
  tap::Event notice;
  notice.type = 0xFFFFFFFE;
  EXPECT_TRUE(isDisabledNotice(notice));
  notice.type = 0xFFFFFFFF;
  EXPECT_TRUE(isDisabledNotice(notice));
  for (const EventType type : watchedTypes) EXPECT_FALSE(isDisabledNotice(eventOf(type)));
}

TEST(users_input, is_not_what_carries_the_tools_own_tag) {
  for (const EventType type : watchedTypes) {
    tap::Event own = eventOf(type);
    own.deltaX = 100;
    EXPECT_TRUE(isUsersInput(own));
    own.sourceUserData = 0x5A545256;
    EXPECT_FALSE(isUsersInput(own));
    own.sourceUserData = 0x5A545257;
    EXPECT_TRUE(isUsersInput(own));
  }
}

TEST(users_input, begins_with_a_movement_of_two_points) {
  EXPECT_FALSE(isUsersInput(moved(0, 0)));
  EXPECT_FALSE(isUsersInput(moved(1, 0)));
  EXPECT_FALSE(isUsersInput(moved(0, -1)));
  EXPECT_TRUE(isUsersInput(moved(1, 1)));
  EXPECT_TRUE(isUsersInput(moved(-1, 1)));
  EXPECT_TRUE(isUsersInput(moved(2, 0)));
  EXPECT_TRUE(isUsersInput(moved(0, -2)));
  constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
  EXPECT_TRUE(isUsersInput(moved(lowest, lowest)));
}

TEST(users_input, is_every_other_event_without_a_movement) {
  for (const EventType type : watchedTypes) {
    EXPECT_EQ(isUsersInput(eventOf(type)), type != EventType::mouseMoved);
  }
}

TEST(input_kind, is_of_three) {
  for (const EventType type : watchedTypes) {
    std::string expected = "pointer";
    if (type == EventType::keyDown || type == EventType::flagsChanged) expected = "key";
    if (type == EventType::scrollWheel) expected = "scroll";
    EXPECT_EQ(inputKind(eventOf(type)), expected);
    EXPECT_EQ(isKeyInput(eventOf(type)), expected == "key");
  }
}

windowserver::Window window(std::int64_t pid, double x, double width) {
  return {7, pid, 0, std::nullopt, x, 0.0, width, 100.0};
}

bool touches41(const std::vector<windowserver::Window>& windows) {
  tap::Event click = eventOf(EventType::leftMouseDown);
  click.location = {50, 50};
  return isOnWindowOf(41, click, windows);
}

TEST(pointer_input, touches_the_owner_of_the_first_window_under_it) {
  EXPECT_TRUE(touches41({window(41, 0, 100)}));
  EXPECT_FALSE(touches41({window(42, 0, 100)}));
  EXPECT_TRUE(touches41({window(41, 0, 100), window(42, 0, 100)}));
  EXPECT_FALSE(touches41({window(42, 0, 100), window(41, 0, 100)}));
  EXPECT_TRUE(touches41({window(42, 60, 100), window(41, 0, 100)}));
  EXPECT_FALSE(touches41({}));
}

TEST(pointer_input, is_not_on_the_right_and_bottom_edges_of_a_window) {
  EXPECT_TRUE(touches41({window(41, 50, 10)}));
  EXPECT_FALSE(touches41({window(41, 40, 10)}));
  windowserver::Window above = window(41, 0, 100);
  above.height = 50;
  EXPECT_FALSE(touches41({above}));
}

TEST(pointer_input, passes_windows_without_bounds_and_empty_ones) {
  windowserver::Window boundless = window(42, 0, 100);
  boundless.y.reset();
  EXPECT_TRUE(touches41({boundless, window(41, 0, 100)}));
  EXPECT_TRUE(touches41({window(42, 0, 0), window(41, 0, 100)}));
  EXPECT_TRUE(touches41({window(42, nan, 100), window(41, 0, 100)}));
  EXPECT_TRUE(touches41({window(42, 100, -100), window(41, 0, 100)}));
}

TEST(pointer_input, on_a_window_of_nobody_touches_nobody) {
  windowserver::Window ownerless = window(41, 0, 100);
  ownerless.ownerPid.reset();
  EXPECT_FALSE(touches41({ownerless, window(41, 0, 100)}));
}

TEST(promptness, of_return_and_enter_is_that_of_a_submission) {
  for (const bool touches : {false, true}) {
    EXPECT_EQ(promptnessOf(keyDown(36), touches), Promptness::submitted);
    EXPECT_EQ(promptnessOf(keyDown(76), touches), Promptness::submitted);
    EXPECT_EQ(promptnessOf(keyDown(36, commandFlag), touches), Promptness::submitted);
  }
}

TEST(promptness, of_a_shifted_return_depends_on_what_it_touches) {
  EXPECT_EQ(promptnessOf(keyDown(36, shiftFlag), true), Promptness::atOnce);
  EXPECT_EQ(promptnessOf(keyDown(76, shiftFlag | commandFlag), true), Promptness::atOnce);
  EXPECT_EQ(promptnessOf(keyDown(36, shiftFlag), false), Promptness::throttled);
  EXPECT_EQ(promptnessOf(keyDown(76, shiftFlag | commandFlag), false), Promptness::throttled);
}

TEST(promptness, of_everything_else_depends_on_what_it_touches) {
  for (const EventType type : watchedTypes) {
    tap::Event other = eventOf(type);
    EXPECT_EQ(promptnessOf(other, true), Promptness::atOnce);
    EXPECT_EQ(promptnessOf(other, false), Promptness::throttled);
    if (type == EventType::keyDown) continue;
    other.keyCode = 36;
    EXPECT_EQ(promptnessOf(other, false), Promptness::throttled);
  }
  EXPECT_EQ(promptnessOf(keyDown(37), false), Promptness::throttled);
  EXPECT_EQ(promptnessOf(keyDown(75), false), Promptness::throttled);
}

TEST(throttled_reports, are_due_after_more_than_a_quarter_of_a_second) {
  EXPECT_TRUE(isReportDue(1000, 0));
  EXPECT_FALSE(isReportDue(1000, 1000));
  EXPECT_FALSE(isReportDue(1000.25, 1000));
  EXPECT_TRUE(isReportDue(1000.2500001, 1000));
}

TEST(throttled_reports, are_due_after_the_clock_was_set_back) {
  EXPECT_TRUE(isReportDue(999, 1000));
}

TEST(whole_milliseconds, cut_fractions_off) {
  EXPECT_EQ(wholeMilliseconds(0), 0);
  EXPECT_EQ(wholeMilliseconds(0.0019), 1);
  EXPECT_EQ(wholeMilliseconds(12.5), 12'500);
  EXPECT_EQ(wholeMilliseconds(1'792'000'000.123), 1'792'000'000'123);
}

TEST(whole_milliseconds, are_0_when_there_is_no_such_number) {
  EXPECT_EQ(wholeMilliseconds(infinity), 0);
  EXPECT_EQ(wholeMilliseconds(-infinity), 0);
  EXPECT_EQ(wholeMilliseconds(nan), 0);
  EXPECT_EQ(wholeMilliseconds(std::numeric_limits<double>::max()), 0);
  EXPECT_EQ(wholeMilliseconds(1e17), 0);
  // Of milliseconds 9e18 is the least that is too many.
  EXPECT_EQ(wholeMilliseconds(9e15), 0);
}

}  // namespace
}  // namespace driver
