#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// What the commands that search and press elements say before they look at any.
namespace ax_usage_test {

using namespace testing_support;

constexpr const char* notes = R"(
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

struct Command {
  const char* usage;   // after "usage: "
  const char* tooFew;  // words, one less than are needed
  const char* enough;  // words, for an application that does not run
};

constexpr Command commands[] = {
    {"ax-list <app>", "ax-list", "ax-list Gone"},
    {"ax-dump <app>", "ax-dump", "ax-dump Gone"},
    {"ax-find-text <app> <text> [text...]", "ax-find-text Notes", "ax-find-text Gone a"},
    {"ax-texts-at <app> <x> <y>", "ax-texts-at Notes 1", "ax-texts-at Gone 1 2"},
    {"ax-at <app> <x> <y>", "ax-at Notes 1", "ax-at Gone 1 2"},
    {"ax-press <app> <x> <y>", "ax-press Notes 1", "ax-press Gone 1 2"},
    {"ax-match <app> <label> <x> <y>", "ax-match Notes Send 1", "ax-match Gone Send 1 2"},
    {"ax-press-match <app> <label> <x> <y>", "ax-press-match Notes Send 1",
     "ax-press-match Gone Send 1 2"},
    {"ax-press-exact <app> <label> [only|last] [container label]", "ax-press-exact Notes",
     "ax-press-exact Gone Send"},
    {"ax-press-child <app> <row label text> <child text|last> [row role]",
     "ax-press-child Notes Row", "ax-press-child Gone Row last"},
    {"ax-press-in-document <app> <document> <button>", "ax-press-in-document Notes Chat",
     "ax-press-in-document Gone Chat Send"},
};

TEST(ax_commands, without_enough_arguments_tell_how_they_are_used) {
  for (const Command& command : commands) {
    TestMac mac(notes);
    const Result run = mac.driver(command.tooFew);
    EXPECT_EQ(seen(run), failure(std::string("usage: ") + command.usage));
    EXPECT_EQ(run.effects, "");
  }
}

TEST(ax_commands, of_an_application_that_does_not_run_fail) {
  for (const Command& command : commands) {
    TestMac mac(notes);
    const Result run = mac.driver(command.enough);
    EXPECT_EQ(seen(run), failure("app not running: Gone")) << command.enough;
    EXPECT_EQ(run.effects, "") << command.enough;
  }
}

TEST(ax_commands, name_the_application_as_it_was_given) {
  TestMac mac(notes);
  EXPECT_EQ(seen(mac.driverWith({"ax-list", " notes\""})), failure(R"(app not running:  notes\")"));
}

TEST(ax_commands, find_the_application_by_name_identifier_or_process) {
  for (const char* reference : {"Notes", "com.example.notes", "pid:41"}) {
    TestMac mac(notes);
    EXPECT_EQ(seen(mac.driverWith({"ax-list", reference})),
              success(R"({"elements":[],"ok":true})"));
  }
}

TEST(ax_commands, ask_the_application_for_all_it_has_and_for_nothing_else) {
  for (const char* line : {"ax-list Notes", "ax-dump Notes", "ax-find-text Notes a",
                           "ax-texts-at Notes 1 2", "ax-at Notes 1 2", "ax-match Notes a 1 2"}) {
    TestMac mac(notes);
    EXPECT_EQ(mac.driver(line).effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
)");
  }
}

TEST(ax_commands, use_an_application_that_rejects_being_asked_as_it_is) {
  TestMac mac(R"(
    app Notes pid 41 rejects-enabling
        window 7 at 0,0 size 9x9
            AXButton "Send" at 1,1 size 5x5
)");
  EXPECT_EQ(
      seen(mac.driver("ax-list Notes")),
      success(
          R"({"elements":[{"frame":{"height":5,"width":5,"x":1,"y":1},"label":"Send","role":"AXButton"}],"ok":true})"));
}

TEST(ax_commands, refuse_coordinates_that_are_no_numbers) {
  for (const char* line :
       {"ax-texts-at Notes left 2", "ax-at Notes left 2", "ax-press Notes left 2",
        "ax-match Notes Send left 2", "ax-press-match Notes Send left 2"}) {
    TestMac mac(notes);
    const Result run = mac.driver(line);
    EXPECT_EQ(run.status, 1) << line;
    EXPECT_EQ(run.effects, "") << line;
  }
}

TEST(ax_commands, press_nothing_while_the_screen_is_locked) {
  for (const char* line :
       {"ax-press Gone 1 2", "ax-press-match Gone Send 1 2", "ax-press-exact Gone Send",
        "ax-press-child Gone Row last", "ax-press-in-document Gone Chat Send"}) {
    TestMac mac("session locked\n");
    EXPECT_EQ(seen(mac.driver(line)),
              failure("the Mac is locked or not on console; background input is unavailable"));
  }
}

TEST(ax_commands, read_while_the_screen_is_locked) {
  TestMac mac(std::string(notes) + "    session locked\n");
  EXPECT_EQ(seen(mac.driver("ax-list Notes")), success(R"({"elements":[],"ok":true})"));
  EXPECT_EQ(seen(mac.driver("ax-at Notes 1 2")), success(R"({"element":null,"ok":true})"));
  EXPECT_EQ(seen(mac.driver("ax-match Notes Send 1 2")),
            success(R"({"error":"no element","ok":false})"));
}

TEST(writes_of_attributes, that_come_to_nothing_say_why) {
  TestMac mac("app Notes pid 41 hangs\n", {});
  EXPECT_EQ(
      mac.driver("ax-list Notes").effects,
      "    0 ms  write 41/0 AXManualAccessibility true LOST: the application did not answer in "
      "time\n"
      " 6000 ms  write 41/0 AXEnhancedUserInterface true LOST: the application did not answer in "
      "time\n");
}

TEST(writes_of_attributes, that_are_answered_as_unknown_are_obeyed) {
  TestMac mac("app Notes pid 41 rejects-enabling\n", {});
  EXPECT_EQ(mac.driver("ax-list Notes").effects,
            "    0 ms  write 41/0 AXManualAccessibility true: obeyed, and answered as unknown\n"
            "    0 ms  write 41/0 AXEnhancedUserInterface true: obeyed, and answered as unknown\n");
}

}  // namespace ax_usage_test
