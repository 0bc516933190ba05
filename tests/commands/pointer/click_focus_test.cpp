#include <gtest/gtest.h>

#include "tests/support/posted_events.h"
#include "tests/support/simulated_run.h"

/// When clicks give the target focus and take it back, and what they need for it.
namespace click_focus_test {

using namespace testing_support;

/// Clicks land when Notes holds focus, and then toggle the box. More lines may follow.
std::string deskWith(const std::string& more) {
  return R"(
    display 1 1440x900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXCheckBox "Done" at 120,90 size 60x20
)" + more;
}

const std::string changed = success(R"({"changed":true,"ok":true,"via":"background","window":7})");

/// A refusal found while working: the status is 0.
std::string refused(const std::string& message) {
  return success("{\"error\":\"" + message + "\",\"ok\":false}");
}

constexpr const char* postsWithoutFocus = R"(    0 ms  post 41/7 moved -1,-1 private: priming
   27 ms  post 41/7 left-down -1,-1 private: priming
   40 ms  post 41/7 left-up -1,-1 private: priming
  152 ms  post 41/7 moved 130,95 private: priming
  179 ms  post 41/7 left-down 130,95 private: press
  192 ms  post 41/7 left-up 130,95 private: pressed AXCheckBox "Done"
)";

constexpr const char* focusAndPosts = R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved -1,-1 private: priming
   67 ms  post 41/7 left-down -1,-1 private: priming
   80 ms  post 41/7 left-up -1,-1 private: priming
  192 ms  post 41/7 moved 130,95 private: priming
  219 ms  post 41/7 left-down 130,95 private: press
  232 ms  post 41/7 left-up 130,95 private: pressed AXCheckBox "Done"
)";

constexpr const char* taken = "  344 ms  focus 41/7 take\n";

TEST(click_focus, is_given_and_taken_back) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
  EXPECT_EQ(run.effects, std::string(focusAndPosts) + taken);
  EXPECT_EQ(mac.world().applications[1].focusByRecord, 0U);
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_focus, is_not_touched_when_the_target_is_in_front) {
  TestMac mac(deskWith("    at 0ms front Notes\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
  EXPECT_EQ(run.effects, postsWithoutFocus);
  EXPECT_EQ(run.elapsed, 404'000);
}

TEST(click_focus, is_not_touched_when_a_capture_session_holds_it) {
  TestMac mac(deskWith(""));
  mac.desktop().mac().world.applications[1].focusByRecord = 7;

  const Result run = mac.driver("bg-click Notes 130 95", {{"CU_FOCUS_PID", "41"}});

  EXPECT_EQ(seen(run), changed);
  EXPECT_EQ(run.effects, postsWithoutFocus);
  EXPECT_EQ(mac.world().applications[1].focusByRecord, 7U);
  EXPECT_EQ(run.elapsed, 404'000);
}

TEST(click_focus, is_held_only_for_exactly_the_process_id) {
  for (const char* value : {"", " 41", "41 ", "041", "+41", "40", "411"}) {
    SCOPED_TRACE(value);
    TestMac mac(deskWith(""));

    const Result run = mac.driver("bg-click Notes 130 95", {{"CU_FOCUS_PID", value}});

    EXPECT_EQ(run.effects, std::string(focusAndPosts) + taken);
  }
}

TEST(click_focus, is_not_taken_back_from_a_target_that_came_to_front) {
  // Between the first and the last event, and just before focus is taken back.
  for (const char* time : {"41ms", "100ms", "231ms", "343999us"}) {
    SCOPED_TRACE(time);
    TestMac mac(deskWith("    at " + std::string(time) + " front Notes\n"));

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), changed);
    EXPECT_EQ(run.effects.find("take"), std::string::npos);
    EXPECT_EQ(run.elapsed, 544'000);
  }
}

TEST(click_focus, is_taken_back_when_the_target_was_in_front_only_meanwhile) {
  TestMac mac(deskWith("    at 100ms front Notes\n    at 200ms front Browser\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
  EXPECT_NE(run.effects.find(taken), std::string::npos);
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_focus, is_given_and_taken_back_while_the_foreground_is_unknown) {
  for (const char* fault :
       {"private.front-process 2+ error -600", "private.process-pid 2+ error -600"}) {
    SCOPED_TRACE(fault);
    TestMac mac(deskWith(""), {fault});

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), changed);
    EXPECT_EQ(run.effects, std::string(focusAndPosts) + taken);
  }
}

TEST(click_focus, that_is_refused_refuses_the_click) {
  TestMac mac(deskWith(""), {"private.post-record 1 error -600"});

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), refused("background target focus is unavailable"));
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 40'000);
}

TEST(click_focus, that_has_no_addressee_refuses_the_click_at_once) {
  TestMac mac(deskWith(""), {"private.process-for-pid 1 error -600"});

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), refused("background target focus is unavailable"));
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(click_focus, that_cannot_be_taken_back_leaves_the_click_a_success) {
  TestMac mac(deskWith(""), {"private.post-record 2 error -600"});

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
  EXPECT_EQ(run.effects, focusAndPosts);
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_focus, needs_the_entry_points_for_records) {
  for (const char* symbol : {"SLPSPostEventRecordTo", "GetProcessForPID"}) {
    SCOPED_TRACE(symbol);
    TestMac mac(deskWith("    missing " + std::string(symbol) + "\n"));

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), refused("background target focus is unavailable"));
    EXPECT_EQ(run.effects, "");
    EXPECT_EQ(run.elapsed, 0);
  }
}

TEST(click_focus, needs_no_entry_point_for_records_in_front) {
  for (const char* symbol : {"SLPSPostEventRecordTo", "GetProcessForPID"}) {
    SCOPED_TRACE(symbol);
    TestMac mac(deskWith("    missing " + std::string(symbol) + "\n    at 0ms front Notes\n"));

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), changed);
    EXPECT_EQ(run.effects, postsWithoutFocus);
  }
}

TEST(click_needs, the_setter_of_the_window_location_before_anything_else) {
  for (const char* name : {"CGEventSetWindowLocation", "SkyLight"}) {
    SCOPED_TRACE(name);
    TestMac mac(deskWith("    missing " + std::string(name) + "\n"));

    const Result click = mac.driver("bg-click Notes 130 95");
    const Result wrongCount = mac.driver("bg-click Notes 130 95 left 3");

    EXPECT_EQ(seen(click), refused("private input functions are missing on this macOS"));
    EXPECT_EQ(click.effects, "");
    EXPECT_EQ(click.elapsed, 0);
    EXPECT_EQ(seen(wrongCount), seen(click));
  }
}

TEST(click_needs, the_private_route_and_setter_and_gives_focus_back_without_them) {
  for (const char* symbol : {"SLEventPostToPid", "SLEventSetIntegerValueField"}) {
    SCOPED_TRACE(symbol);
    TestMac mac(deskWith("    missing " + std::string(symbol) + "\n"));

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), refused("private input functions are missing on this macOS"));
    EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n  140 ms  focus 41/7 take\n");
    EXPECT_EQ(run.elapsed, 180'000);
  }
}

TEST(click_needs, the_private_route_and_setter_in_front_too) {
  for (const char* symbol : {"SLEventPostToPid", "SLEventSetIntegerValueField"}) {
    SCOPED_TRACE(symbol);
    TestMac mac(deskWith("    missing " + std::string(symbol) + "\n    at 0ms front Notes\n"));

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), refused("private input functions are missing on this macOS"));
    EXPECT_EQ(run.effects, "");
    EXPECT_EQ(run.elapsed, 0);
  }
}

TEST(click_needs, to_know_the_foreground_when_it_starts) {
  for (const char* name : {"GetFrontProcess", "GetProcessPID", "ApplicationServices"}) {
    SCOPED_TRACE(name);
    TestMac mac(deskWith("    missing " + std::string(name) + "\n"));

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), failure("current foreground process is unavailable"));
    EXPECT_EQ(run.effects, "");
  }
}

TEST(click_needs, no_window_numbers_of_elements) {
  TestMac mac(deskWith("    missing _AXUIElementGetWindow\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
}

TEST(click_count, beyond_two_or_below_one_posts_nothing) {
  for (const char* count : {"0", "3", "-1", "100", "9223372036854775807"}) {
    SCOPED_TRACE(count);
    TestMac mac(deskWith(""));

    const Result run = mac.driver("bg-click Notes 130 95 left " + std::string(count));

    EXPECT_EQ(seen(run), refused("unsupported click count " + std::string(count)));
    EXPECT_EQ(run.effects, "");
    EXPECT_EQ(run.elapsed, 0);
  }
}

}  // namespace click_focus_test
