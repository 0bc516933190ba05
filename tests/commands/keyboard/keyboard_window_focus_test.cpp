#include <gtest/gtest.h>

#include "tests/support/posted_events.h"
#include "tests/support/posted_keys.h"

/// How the keyboard's window gets and loses focus, and what that needs.
namespace keyboard_window_focus_test {

using namespace testing_support;

std::string deskWith(const std::string& more) {
  return R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 300x300
            AXTextArea "Body" at 120,130 size 200x200
        window 8 "Outbox" at 500,80 size 300x300
            AXTextArea "Draft" at 520,130 size 200x200
)" + more;
}

const std::string typed = success(R"({"ok":true,"pid":41,"via":"background","window":7})");

std::string refused(const std::string& message) {
  return success("{\"error\":\"" + message + "\",\"ok\":false}");
}

const std::string noFocus = refused("background keyboard focus is unavailable on this macOS");
const std::string noKeyWindow = refused("background key-window selection failed");
const std::string usersKeyboard =
    refused("another window of the target app currently owns the user's keyboard");

TEST(keyboard_focus, is_given_made_key_and_taken_back) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-key Notes a");

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  key 41/7 first
   40 ms  key 41/7 second
  340 ms  post 41/7 key-down 0 public: typed "a" into AXTextArea "Body"
  352 ms  post 41/7 key-up 0 public
  414 ms  focus 41/7 take
)");
  EXPECT_EQ(mac.world().applications[1].focusByRecord, 0U);
  EXPECT_EQ(mac.world().frontmost, 40);
}

TEST(keyboard_focus, of_a_window_that_is_key_and_has_a_focused_element_needs_no_key_records) {
  TestMac mac(deskWith(""));
  mac.driver("bg-key Notes a");

  const Result again = mac.driver("bg-key Notes b");

  EXPECT_EQ(seen(again), typed);
  EXPECT_EQ(again.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 key-down 11 public: typed "b" into AXTextArea "Body"
   52 ms  post 41/7 key-up 11 public
  114 ms  focus 41/7 take
)");
  EXPECT_EQ(again.elapsed, 154'000);
}

TEST(keyboard_focus, that_is_held_is_neither_given_nor_taken_but_the_window_made_key) {
  TestMac mac(deskWith(""));
  mac.desktop().mac().world.applications[1].focusByRecord = 7;

  const Result run = mac.driver("bg-key Notes a", {{"CU_FOCUS_PID", "41"}});

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.effects, R"(    0 ms  key 41/7 first
    0 ms  key 41/7 second
  300 ms  post 41/7 key-down 0 public: typed "a" into AXTextArea "Body"
  312 ms  post 41/7 key-up 0 public
)");
  EXPECT_EQ(waits(mac), "300000 12000 12000 50000");
  EXPECT_EQ(mac.world().applications[1].focusByRecord, 7U);
}

TEST(keyboard_focus, is_held_only_for_exactly_the_process_id) {
  for (const char* value : {"", " 41", "41 ", "041", "+41", "40", "411"}) {
    SCOPED_TRACE(value);
    TestMac mac(deskWith(""));
    const Result run = mac.driver("bg-key Notes a", {{"CU_FOCUS_PID", value}});
    EXPECT_EQ(seen(run), typed);
    EXPECT_NE(run.effects.find("focus 41/7 give"), std::string::npos);
    EXPECT_NE(run.effects.find("focus 41/7 take"), std::string::npos);
    EXPECT_EQ(run.elapsed, 454'000);
  }
}

TEST(keyboard_focus, that_is_refused_refuses_the_keys) {
  TestMac mac(deskWith(""), {"private.post-record 1 error -600"});

  const Result run = mac.driver("bg-key Notes a");

  EXPECT_EQ(seen(run), noFocus);
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 40'000);
}

TEST(keyboard_focus, without_an_addressee_or_an_entry_point_refuses_the_keys_at_once) {
  TestMac without(deskWith(""), {"private.process-for-pid 1 error -600"});
  const Result refusedRun = without.driver("bg-key Notes a");
  EXPECT_EQ(seen(refusedRun), noFocus);
  EXPECT_EQ(refusedRun.elapsed, 0);

  for (const char* name : {"SLPSPostEventRecordTo", "GetProcessForPID", "SkyLight"}) {
    SCOPED_TRACE(name);
    TestMac mac(deskWith("    missing " + std::string(name) + "\n"));
    const Result run = mac.driver("bg-key Notes a");
    EXPECT_EQ(seen(run), noFocus);
    EXPECT_EQ(run.effects, "");
    EXPECT_EQ(run.elapsed, 0);
  }
}

TEST(keyboard_focus, is_taken_back_when_the_window_cannot_be_made_key) {
  for (const char* fault :
       {"private.post-record 2 error -600", "private.process-for-pid 2 error -600"}) {
    SCOPED_TRACE(fault);
    TestMac mac(deskWith(""), {fault});

    const Result run = mac.driver("bg-key Notes a");

    EXPECT_EQ(seen(run), noKeyWindow);
    EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n   90 ms  focus 41/7 take\n");
    EXPECT_EQ(run.elapsed, 130'000);
    EXPECT_EQ(mac.world().applications[1].focusByRecord, 0U);
  }
}

TEST(keyboard_focus, is_taken_back_when_only_the_second_key_record_is_refused) {
  TestMac mac(deskWith(""), {"private.post-record 3 error -600"});

  const Result run = mac.driver("bg-key Notes a");

  EXPECT_EQ(seen(run), noKeyWindow);
  EXPECT_EQ(waits(mac), "40000 50000 40000");
  EXPECT_EQ(keySteps(mac), "");
}

TEST(keyboard_focus, that_is_held_stays_when_the_window_cannot_be_made_key) {
  for (const char* name : {"SLPSPostEventRecordTo", "GetProcessForPID"}) {
    TestMac mac(deskWith("    missing " + std::string(name) + "\n"));
    const Result run = mac.driver("bg-key Notes a", {{"CU_FOCUS_PID", "41"}});
    EXPECT_EQ(seen(run), noKeyWindow);
    EXPECT_EQ(run.elapsed, 50'000);
  }
}

TEST(keyboard_focus, that_cannot_be_taken_back_leaves_the_keys_a_success) {
  TestMac mac(deskWith(""), {"private.post-record 4 error -600"});
  const Result run = mac.driver("bg-key Notes a");
  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.elapsed, 454'000);
}

TEST(keyboard_focus, needs_neither_the_private_route_nor_its_setters) {
  for (const char* name :
       {"SLEventPostToPid", "SLEventSetIntegerValueField", "CGEventSetWindowLocation"}) {
    TestMac mac(deskWith("    missing " + std::string(name) + "\n"));
    EXPECT_EQ(seen(mac.driver("bg-key Notes a")), typed) << name;
  }
}

TEST(keyboard_focus, is_not_needed_by_a_window_in_which_the_user_types) {
  for (const char* missing :
       {"", "    missing SLPSPostEventRecordTo\n", "    missing SkyLight\n"}) {
    TestMac mac(deskWith("    at 0ms front Notes\n" + std::string(missing)));

    const Result run = mac.driver("bg-key Notes a");

    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(run.effects.find("focus"), std::string::npos);
    EXPECT_EQ(waits(mac), "12000 12000");
    EXPECT_EQ(run.elapsed, 24'000);
  }
}

TEST(keyboard_focus, is_not_needed_by_a_sheet_in_which_the_user_types) {
  TestMac mac(R"(
    app Notes pid 41 frontmost
        window 7 "Inbox" at 100,80 size 300x300
            AXTextArea "Body" at 120,130 size 200x200
        window 10 at 200,120 size 200x120 sheet of 7
            AXTextField "Name" at 210,130 size 100x20 focused
)");

  const Result run = mac.driver("bg-type Notes x");

  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":41,"via":"background","window":10})"));
  EXPECT_EQ(mac.valueOf("Notes", "Name"), "x");
  EXPECT_EQ(run.elapsed, 24'000);
}

TEST(keyboard_focus, is_not_taken_from_the_user_who_types_in_another_window) {
  // With a scope, the command is refused before the application is even looked at.
  TestMac mac(deskWith("    at 0ms front Notes\n"));

  const Result run = mac.driver("bg-key Notes a", {{"CU_WINDOW", "outbox"}});

  EXPECT_EQ(seen(run), failure("another window of the target app currently owns the user's "
                               "keyboard; background input will not switch it"));
  EXPECT_EQ(run.elapsed, 0);
}

TEST(keyboard_focus, is_not_taken_from_the_user_who_has_just_gone_to_another_window) {
  // The window was chosen; then, before the second look at what has the user's keyboard.
  TestMac mac(deskWith("    at 0ms front Notes\n"),
              {"private.front-process 2 before user click 600,200"});

  const Result run = mac.driver("bg-key Notes a");

  EXPECT_EQ(seen(run), usersKeyboard);
  EXPECT_EQ(keySteps(mac), "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(keyboard_focus, is_not_given_in_an_application_that_has_just_come_to_front_elsewhere) {
  TestMac mac(deskWith(""), {"private.front-process 2 before user click 600,200"});

  const Result run = mac.driver("bg-key Notes a");

  EXPECT_EQ(seen(run), usersKeyboard);
  EXPECT_EQ(run.effects.find("give"), std::string::npos);
}

TEST(keyboard_focus, is_not_given_in_front_where_nobody_knows_where_the_user_types) {
  TestMac mac(R"(
    app Notes pid 41 frontmost no-focused-window
        window 7 "Inbox" at 100,80 size 300x300
)");

  const Result run = mac.driver("bg-key Notes a");

  EXPECT_EQ(seen(run), usersKeyboard);
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(keyboard_focus, is_not_taken_back_from_a_target_that_came_to_front) {
  for (const char* time : {"41ms", "341ms", "413999us"}) {
    SCOPED_TRACE(time);
    TestMac mac(deskWith("    at " + std::string(time) + " front Notes\n"));

    const Result run = mac.driver("bg-key Notes a");

    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(run.effects.find("take"), std::string::npos);
    EXPECT_EQ(run.elapsed, 414'000);
  }
}

TEST(keyboard_focus, makes_no_window_key_of_a_target_that_came_to_front) {
  TestMac mac(deskWith("    at 39ms front Notes\n"));

  const Result run = mac.driver("bg-key Notes a");

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.effects.find("key 41/7"), std::string::npos);
  EXPECT_EQ(run.elapsed, 114'000);
}

TEST(keyboard_focus, is_taken_back_when_the_target_was_in_front_only_meanwhile) {
  TestMac mac(deskWith("    at 345ms front Notes\n    at 400ms front Browser\n"));
  const Result run = mac.driver("bg-key Notes a");
  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.elapsed, 454'000);
  EXPECT_EQ(mac.world().applications[1].focusByRecord, 0U);
}

TEST(keyboard_focus, is_given_and_taken_back_while_the_foreground_is_unknown) {
  for (const char* fault :
       {"private.front-process 2+ error -600", "private.process-pid 2+ error -600"}) {
    TestMac mac(deskWith(""), {fault});
    const Result run = mac.driver("bg-key Notes a");
    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(run.elapsed, 454'000);
    EXPECT_EQ(mac.world().applications[1].focusByRecord, 0U);
  }
}

TEST(keyboard_focus, needs_to_know_the_foreground_when_it_starts) {
  for (const char* name : {"GetFrontProcess", "GetProcessPID", "ApplicationServices"}) {
    TestMac mac(deskWith("    missing " + std::string(name) + "\n"));
    EXPECT_EQ(seen(mac.driver("bg-key Notes a")),
              failure("current foreground process is unavailable"));
  }
}

}  // namespace keyboard_window_focus_test
