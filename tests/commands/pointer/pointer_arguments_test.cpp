#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// The command lines of the capture group.
namespace pointer_arguments_test {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 1440x900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXCheckBox "Done" at 120,90 size 60x20 press: toggle right: toggle
)";

const std::string clicked = success(R"({"changed":true,"ok":true,"via":"background","window":7})");

using Words = std::vector<std::string>;

TEST(click_arguments, too_few_are_answered_with_the_usage) {
  for (const char* command : {"bg-click", "bg-click Notes", "bg-click Notes 130"}) {
    SCOPED_TRACE(command);
    TestMac mac(desk);

    EXPECT_EQ(seen(mac.driver(command)),
              failure("usage: bg-click <app> <x> <y> [left|right] [count]"));
  }
}

TEST(click_arguments, a_button_is_exactly_left_or_right) {
  for (const char* button : {"middle", "Left", "RIGHT", "left ", "", "2"}) {
    SCOPED_TRACE(button);
    TestMac mac(desk);

    const Result run = mac.driverWith({"bg-click", "Notes", "130", "95", button});

    EXPECT_EQ(seen(run), failure("unsupported mouse button"));
  }
}

TEST(click_arguments, a_bad_button_is_reported_before_a_bad_coordinate) {
  TestMac mac(desk);

  EXPECT_EQ(seen(mac.driver("bg-click Notes ten 95 middle")), failure("unsupported mouse button"));
}

TEST(click_arguments, coordinates_are_whole_numbers_as_text_and_the_first_bad_one_is_named) {
  const std::pair<Words, const char*> cases[] = {
      {{"bg-click", "Notes", "ten", "20"}, "missing numeric arg 3"},
      {{"bg-click", "Notes", "ten", "twenty"}, "missing numeric arg 3"},
      {{"bg-click", "Notes", "10", "twenty"}, "missing numeric arg 4"},
      {{"bg-click", "Notes", "10px", "20"}, "missing numeric arg 3"},
      {{"bg-click", "Notes", " 10", "20"}, "missing numeric arg 3"},
      {{"bg-click", "Notes", "10", "20 "}, "missing numeric arg 4"},
      {{"bg-click", "Notes", "", "20"}, "missing numeric arg 3"},
      {{"bg-click", "Notes", "10,5", "20"}, "missing numeric arg 3"}};
  for (const auto& [words, message] : cases) {
    SCOPED_TRACE(words[2] + "|" + words[3]);
    TestMac mac(desk);

    EXPECT_EQ(seen(mac.driverWith(words)), failure(message));
  }
}

TEST(click_arguments, coordinates_may_have_any_notation_of_a_number) {
  for (const char* point : {"130 95", "130.0 95.25", "1.3e2 9.5e1", "+130 95", "0x82 0x5f"}) {
    SCOPED_TRACE(point);
    TestMac mac(desk);

    EXPECT_EQ(seen(mac.driver("bg-click Notes " + std::string(point))), clicked);
  }
}

TEST(click_arguments, a_point_that_is_no_place_has_no_window) {
  for (const char* point : {"nan 95", "130 nan", "inf 95", "130 -inf", "1e999 95"}) {
    SCOPED_TRACE(point);
    TestMac mac(desk);

    EXPECT_EQ(seen(mac.driver("bg-click Notes " + std::string(point))),
              success(R"({"error":"no window of the app under the point","ok":false})"));
  }
}

TEST(click_arguments, a_count_that_is_no_integer_means_one) {
  for (const char* count : {"x", "", "1.5", "2x", "0x2", " 2", "99999999999999999999", "1"}) {
    SCOPED_TRACE(count);
    TestMac mac(desk);

    const Result run = mac.driverWith({"bg-click", "Notes", "130", "95", "right", count});

    EXPECT_EQ(seen(run), clicked);
    EXPECT_EQ(run.elapsed, 584'000);
  }
}

TEST(click_arguments, a_count_may_have_a_sign) {
  TestMac mac(desk);

  const Result twice = mac.driver("bg-click Notes 130 95 left +2");
  const Result negative = mac.driver("bg-click Notes 130 95 left -2");

  EXPECT_EQ(seen(twice), success(R"({"changed":false,"ok":true,"via":"background","window":7})"));
  EXPECT_EQ(twice.elapsed, 1'089'000);
  EXPECT_EQ(seen(negative), success(R"({"error":"unsupported click count -2","ok":false})"));
}

TEST(click_arguments, more_are_ignored) {
  TestMac mac(desk);

  EXPECT_EQ(seen(mac.driver("bg-click Notes 130 95 left 1 and so on")), clicked);
}

TEST(motion_arguments, too_few_are_answered_with_the_usage) {
  const std::pair<const char*, const char*> cases[] = {{"bg-scroll", "bg-scroll"},
                                                       {"bg-scroll Notes 10 20", "bg-scroll"},
                                                       {"bg-scroll Notes 10 20 5", "bg-scroll"},
                                                       {"bg-move", "bg-move"},
                                                       {"bg-move Notes 10", "bg-move"},
                                                       {"bg-drag Notes 10 20", "bg-drag"},
                                                       {"bg-drag Notes 10 20 30", "bg-drag"}};
  for (const auto& [command, name] : cases) {
    SCOPED_TRACE(command);
    TestMac mac(desk);

    EXPECT_EQ(seen(mac.driver(command)),
              failure("usage: " + std::string(name) + " <app> <x> <y> [dx|x2] [dy|y2]"));
  }
}

TEST(motion_arguments, the_first_one_that_is_no_number_is_named) {
  const std::pair<const char*, const char*> cases[] = {
      {"bg-scroll Notes a 95 c d", "missing numeric arg 3"},
      {"bg-scroll Notes 130 b c d", "missing numeric arg 4"},
      {"bg-scroll Notes 130 95 c d", "missing numeric arg 5"},
      {"bg-scroll Notes 130 95 0 d", "missing numeric arg 6"},
      {"bg-drag Notes 130 95 c d", "missing numeric arg 5"},
      {"bg-drag Notes 130 95 0 d", "missing numeric arg 6"},
      {"bg-move Notes a b", "missing numeric arg 3"},
      {"bg-move Notes 130 b", "missing numeric arg 4"}};
  for (const auto& [command, message] : cases) {
    SCOPED_TRACE(command);
    TestMac mac(desk);

    const Result run = mac.driver(command);

    EXPECT_EQ(seen(run), failure(message));
    EXPECT_EQ(run.effects, "");
  }
}

TEST(motion_arguments, amounts_and_ends_are_read_only_once_there_is_a_window) {
  for (const char* command : {"bg-scroll Notes 1000 95 c d", "bg-drag Notes 1000 95 c d"}) {
    SCOPED_TRACE(command);
    TestMac mac(desk);

    EXPECT_EQ(seen(mac.driver(command)),
              success(R"({"error":"no window of the app under the point","ok":false})"));
  }
}

TEST(motion_arguments, of_a_move_end_with_the_point) {
  TestMac mac(desk);

  EXPECT_EQ(seen(mac.driver("bg-move Notes 130 95 what ever")),
            success(R"({"changed":true,"ok":true,"via":"background","window":7})"));
}

TEST(focus_hold, is_refused_outside_a_capture_session_whatever_its_arguments) {
  for (const char* command :
       {"bg-focus-hold", "bg-focus-hold Notes", "bg-focus-hold Nobody and more"}) {
    SCOPED_TRACE(command);
    TestMac mac(desk);

    const Result run = mac.driver(command);

    EXPECT_EQ(seen(run),
              success(R"({"error":"input focus must be held by a capture session","ok":false})"));
    EXPECT_EQ(run.effects, "");
  }
}

TEST(focus_hold, obeys_the_preconditions_of_input) {
  TestMac mac(std::string(desk) + "    session locked\n");

  EXPECT_EQ(seen(mac.driver("bg-focus-hold Notes")),
            failure("the Mac is locked or not on console; background input is unavailable"));
}

TEST(capture_arguments, too_few_are_answered_with_the_usage) {
  for (const char* command : {"capture", "capture Notes"}) {
    SCOPED_TRACE(command);
    TestMac mac(desk);

    EXPECT_EQ(seen(mac.driver(command)), failure("usage: capture <app> <out.png>"));
  }
}

TEST(capture_group, names_are_exact) {
  for (const char* name : {"BG-CLICK", "bg-clicks", "Capture", "capture-Probe", "bg-"}) {
    SCOPED_TRACE(name);
    TestMac mac(desk);

    EXPECT_EQ(seen(mac.driver(std::string(name) + " Notes 1 2")),
              failure("unknown command: " + std::string(name)));
  }
}

}  // namespace pointer_arguments_test
