#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/watching.h"

/// What is reported of the user's input, and when.
namespace {

using namespace testing_support;

TEST(watch_input_reports, tell_keys_pointer_and_scrolls_apart) {
  EXPECT_EQ(watched({"1s user key a", "2s user press shift", "3s user release shift",
                     "4s user click 500,500", "5s user click 500,500 right",
                     "6s user click 500,500 other", "7s user move 300,300", "8s user scroll 0,-3",
                     "9s user drag 300,300 to 320,310"}),
            reports({report("key", 1000), report("key", 2000), report("key", 3000),
                     report("pointer", 4000), report("pointer", 5000), report("pointer", 6000),
                     report("pointer", 7000), report("scroll", 8000), report("pointer", 9000)}));
}

TEST(watch_input_reports, cut_the_time_to_whole_milliseconds) {
  EXPECT_EQ(watched({"1000999us user key a"}), reports({report("key", 1000)}));
}

TEST(watch_input_reports, do_not_tell_of_a_trembling_pointer) {
  EXPECT_EQ(watched({"20s user move 1201,800", "30s user move 1200,800", "40s user move 1200,801",
                     "50s user move 1200,800"}),
            reports({}));
}

TEST(watch_input_reports, begin_with_a_movement_of_two_points) {
  EXPECT_EQ(watched({"1s user move 1201,801", "2s user move 1199,801", "3s user move 1199,799",
                     "4s user move 1200,799", "5s user move 1199,800"}),
            reports({report("pointer", 1000), report("pointer", 2000), report("pointer", 3000),
                     report("pointer", 5000)}));
}

TEST(watch_input_reports, come_at_most_every_quarter_of_a_second) {
  EXPECT_EQ(watched({"1s user key a", "1100ms user key b", "1249999us user key c",
                     "1250ms user key d", "1250001us user key e", "1500ms user key f",
                     "1500001us user key g", "1500002us user key h"}),
            reports({report("key", 1000), report("key", 1250), report("key", 1500)}));
}

TEST(watch_input_reports, are_throttled_whatever_the_kind) {
  EXPECT_EQ(
      watched({"1s user key a", "1100ms user scroll 0,1", "1150ms user move 100,100",
               "1200ms user click 500,500", "1250ms user press cmd", "1375ms user scroll 0,1"}),
      reports({report("key", 1000), report("scroll", 1375)}));
}

TEST(watch_input_reports, of_a_busy_user_are_four_a_second) {
  std::vector<std::string> happenings;
  for (int time = 1000; time < 11000; time += 10) {
    happenings.push_back(std::to_string(time) + "ms user key a");
  }
  const std::string output = watched(happenings);
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1 + 39);
}

TEST(watch_input_reports, that_are_dropped_do_not_put_off_the_next) {
  EXPECT_EQ(
      watched({"1s user key a", "1125ms user key b", "1250ms user key c", "1375ms user key d"}),
      reports({report("key", 1000), report("key", 1375)}));
}

TEST(watch_input_reports, of_a_submission_name_the_application_in_front_at_once) {
  EXPECT_EQ(
      watched({"1s user key a", "1125ms user key return", "1250ms user key enter",
               "1250001us user key enter"}),
      reports({report("key", 1000), submission("com.example.browser", 1125),
               submission("com.example.browser", 1250), submission("com.example.browser", 1250)}));
  EXPECT_EQ(watched({"1s front Mail", "2s user key return"}),
            reports({submission("com.example.mail", 2000)}));
}

TEST(watch_input_reports, of_a_submission_count_for_the_throttle) {
  EXPECT_EQ(watched({"1s user key return", "1250ms user key a", "1375ms user key a"}),
            reports({submission("com.example.browser", 1000), report("key", 1375)}));
}

TEST(watch_input_reports, of_a_submission_name_nobody_without_an_identifier) {
  std::string world = watchedDeskWith({"1s user key return", "1125ms user key return"});
  world.replace(world.find(" frontmost"), 10, "");
  TestMac mac(world + "app Plain pid 45 unbundled frontmost\n", {}, Mode::direct);
  EXPECT_EQ(seen(watch(mac, {})), reports({report("key", 1000), report("key", 1125)}));
  EXPECT_EQ(watched({"1s user key return"}, {}, {"workspace.frontmost 1 absent"}),
            reports({report("key", 1000)}));
}

TEST(watch_input_reports, of_a_submission_in_the_target_say_both) {
  EXPECT_EQ(watched({"1s user key return"}, {"Browser"}),
            "0 {\"idleMs\":0,\"ok\":true,\"targetPid\":40,\"touchesTarget\":true,\"watching\":true}"
            "\n{\"at\":1767225601000,\"input\":\"key\",\"submit\":\"com.example.browser\","
            "\"touchesTarget\":true}\n");
  EXPECT_EQ(watched({"1s user key return"}, {"Notes"}),
            reportsOnNotes({"{\"at\":1767225601000,\"input\":\"key\",\"submit\":"
                            "\"com.example.browser\",\"touchesTarget\":false}"}));
}

TEST(watch_input_reports, of_other_modifiers_with_return_are_submissions) {
  EXPECT_EQ(watched({"1s user press cmd", "1125ms user key return", "1250ms user release cmd",
                     "1375ms user press option", "1500ms user key enter"}),
            reports({report("key", 1000), submission("com.example.browser", 1125),
                     submission("com.example.browser", 1500)}));
}

TEST(watch_input_reports, throttle_a_shifted_return_that_touches_no_target) {
  // Shift itself is the first input, the return the second.
  EXPECT_EQ(watched({"1s user key shift return", "2s user press shift", "2250ms user key return",
                     "2375ms user key enter"}),
            reports({report("key", 1000), report("key", 2000), report("key", 2375)}));
  EXPECT_EQ(watched({"2s user press shift", "2250ms user key return"}, {"Notes"}),
            reportsOnNotes({reportOnTarget("key", 2000, false)}));
}

TEST(watch_input_reports, tell_a_shifted_return_in_the_target_at_once_without_a_submission) {
  EXPECT_EQ(watched({"1s front Notes", "2s user press shift", "2125ms user key return",
                     "2125ms user key enter"},
                    {"Notes"}),
            reportsOnNotes({reportOnTarget("key", 2000, true), reportOnTarget("key", 2125, true),
                            reportOnTarget("key", 2125, true)}));
}

TEST(watch_input_reports, on_the_target_are_never_throttled) {
  EXPECT_EQ(
      watched({"1s front Notes", "2s user key a", "2s user key b", "2s user scroll 0,1 for Notes"},
              {"Notes"}),
      reportsOnNotes({reportOnTarget("key", 2000, true), reportOnTarget("key", 2000, true),
                      reportOnTarget("scroll", 2000, true)}));
}

TEST(watch_input_reports, on_the_target_throttle_the_others) {
  EXPECT_EQ(
      watched({"1s user key a for Notes", "1125ms user key b", "1375ms user key c"}, {"Notes"}),
      reportsOnNotes({reportOnTarget("key", 1000, true), reportOnTarget("key", 1375, false)}));
}

TEST(watch_input_reports, know_by_the_keyboard_who_is_in_front) {
  EXPECT_EQ(watched({"1s user key a", "2s front Notes", "3s user key a", "4s user press cmd",
                     "5s user release cmd", "6s front Mail", "7s user key a"},
                    {"Notes"}),
            reportsOnNotes({reportOnTarget("key", 1000, false), reportOnTarget("key", 3000, true),
                            reportOnTarget("key", 4000, true), reportOnTarget("key", 5000, true),
                            reportOnTarget("key", 7000, false)}));
}

// The pointer moves before it clicks, and a movement touches nobody.
TEST(watch_input_reports, know_the_target_of_an_event_that_names_it) {
  EXPECT_EQ(
      watched({"1s user key a for Notes", "2s user key a for Mail", "3s user press cmd for Notes",
               "4s user click 20,20 for Notes", "5s user scroll 0,1 for Notes",
               "6s user scroll 0,1 for Mail"},
              {"Notes"}),
      reportsOnNotes({reportOnTarget("key", 1000, true), reportOnTarget("key", 2000, false),
                      reportOnTarget("key", 3000, true), reportOnTarget("pointer", 4000, false),
                      reportOnTarget("pointer", 4000, true), reportOnTarget("scroll", 5000, true),
                      reportOnTarget("scroll", 6000, false)}));
}

TEST(watch_input_reports, know_the_target_by_the_first_window_under_the_pointer) {
  // The middle of Notes; the window of Mail over it; the browser; nothing.
  EXPECT_EQ(watched({"1s user move 500,400", "2s user scroll 0,1", "3s user move 150,130",
                     "4s user scroll 0,1", "5s user move 20,100", "6s user scroll 0,1",
                     "7s user move 1300,850", "8s user scroll 0,1"},
                    {"Notes"}),
            reportsOnNotes(
                {reportOnTarget("pointer", 1000, false), reportOnTarget("scroll", 2000, true),
                 reportOnTarget("pointer", 3000, false), reportOnTarget("scroll", 4000, false),
                 reportOnTarget("pointer", 5000, false), reportOnTarget("scroll", 6000, false),
                 reportOnTarget("pointer", 7000, false), reportOnTarget("scroll", 8000, false)}));
}

TEST(watch_input_reports, of_clicks_on_the_target_come_at_once) {
  EXPECT_EQ(watched({"1s user move 500,400", "1125ms user click 500,400",
                     "1125ms user click 500,400 right", "1125ms user click 500,400 other",
                     "1125ms user drag 500,400 to 510,410"},
                    {"Notes"}),
            reportsOnNotes(
                {reportOnTarget("pointer", 1000, false), reportOnTarget("pointer", 1125, true),
                 reportOnTarget("pointer", 1125, true), reportOnTarget("pointer", 1125, true),
                 reportOnTarget("pointer", 1125, true), reportOnTarget("pointer", 1125, true)}));
}

TEST(watch_input_reports, of_movements_never_touch_the_target) {
  EXPECT_EQ(watched({"1s user move 500,400 for Notes", "1125ms user move 510,410 for Notes",
                     "1375ms user move 500,400 for Notes"},
                    {"Notes"}),
            reportsOnNotes(
                {reportOnTarget("pointer", 1000, false), reportOnTarget("pointer", 1375, false)}));
}

TEST(watch_input_reports, without_windows_believe_the_event) {
  EXPECT_EQ(
      watched({"1s user move 500,400", "2s user scroll 0,1", "3s user scroll 0,1 for Notes"},
              {"Notes"}, {"windowserver.windows 1+ absent"}),
      reportsOnNotes({reportOnTarget("pointer", 1000, false), reportOnTarget("scroll", 2000, false),
                      reportOnTarget("scroll", 3000, true)}));
}

TEST(watch_input_reports, never_tell_of_the_tools_own_input) {
  EXPECT_EQ(
      watched({"1s user key return tagged", "2s user key a tagged", "3s user click 500,400 tagged",
               "4s user scroll 0,1 tagged for Notes", "5s user move 1,1 tagged",
               "6s user press shift tagged", "7s user drag 500,400 to 600,500 tagged",
               "8s user click 500,400 right tagged", "9s user click 500,400 other tagged"},
              {"Notes"}),
      reportsOnNotes({}));
}

TEST(watch_input_reports, are_not_throttled_by_the_tools_own_input) {
  EXPECT_EQ(watched({"1s user key a tagged", "1125ms user key a", "1250ms user key return tagged",
                     "1500ms user key a"}),
            reports({report("key", 1125), report("key", 1500)}));
}

TEST(watch_input_reports, go_on_when_the_target_has_quit) {
  EXPECT_EQ(
      watched({"1s quit Notes", "2s user key a", "3s user move 500,400", "4s user scroll 0,1"},
              {"Notes"}),
      reportsOnNotes({reportOnTarget("key", 2000, false), reportOnTarget("pointer", 3000, false),
                      reportOnTarget("scroll", 4000, false)}));
}

TEST(watch_input_reports, stop_while_the_session_is_unusable) {
  EXPECT_EQ(watched({"1s lock", "2s user key a", "3s unlock", "4s user key a", "5s leave console",
                     "6s user key return", "7s return to console", "8s user key return"}),
            reports({report("key", 4000), submission("com.example.browser", 8000)}));
}

TEST(watch_input_reports, of_keys_stop_while_a_password_is_typed) {
  std::string world = watchedDeskWith({"1s user key a", "2s user scroll 0,1"});
  world.replace(world.find("AXTextArea \"Page\""), 17,
                "AXTextField \"Page\" subrole AXSecureTextField");
  TestMac mac(world, {}, Mode::direct);
  EXPECT_EQ(seen(watch(mac, {})), reports({report("scroll", 2000)}));
}

}  // namespace
