#include <gtest/gtest.h>

#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "tests/support/posted_keys.h"

/// Which window gets the keyboard, and when none does.
namespace keyboard_window_choice_test {

using namespace testing_support;

std::string deskWith(const std::string& more) {
  return R"(
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
)" + more;
}

const std::string noWindow =
    success(R"({"error":"no unambiguous target keyboard window","ok":false})");
const std::string noApplication =
    success(R"({"error":"target app is not running or is hidden","ok":false})");

std::string typedInto(const std::string& window) {
  return success(R"({"ok":true,"pid":41,"via":"background","window":)" + window + "}");
}

/// A reply to "bg-type Notes x", and the label of the field that got the text.
std::string typing(const std::string& world, const Environment& environment = {},
                   std::vector<std::string> faults = {}) {
  TestMac mac(deskWith(world), std::move(faults));
  const Result run = mac.driver("bg-type Notes x", environment);
  for (const auto& application : mac.world().applications) {
    for (const auto& element : application.elements) {
      if (simulator::textOf(element) == "x") return seen(run) + simulator::labelOf(element);
    }
  }
  if (!keySteps(mac).empty()) return seen(run) + "lost";
  EXPECT_EQ(run.effects, "");
  return seen(run);
}

constexpr const char* inbox = R"(
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400
)";

std::string sheet(int number, int parent) {
  return "        window " + std::to_string(number) + " at 200,120 size 300x120 sheet of " +
         std::to_string(parent) + "\n            AXTextField \"Name " + std::to_string(number) +
         "\" at 210,130 size 100x20\n";
}

TEST(keyboard_window, is_the_applications_focused_window) {
  EXPECT_EQ(typing(inbox), typedInto("7") + "Body");
  EXPECT_EQ(typing(std::string(inbox) + R"(
        window 8 "Outbox" at 120,90 size 400x300 focused
            AXTextArea "Draft" at 130,100 size 100x20
)"),
            typedInto("8") + "Draft");
}

TEST(keyboard_window, is_the_first_window_when_none_is_focused) {
  EXPECT_EQ(typing(R"(
    app Notes pid 41 no-focused-window
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400
        window 8 "Outbox" at 120,90 size 400x300
            AXTextArea "Draft" at 130,100 size 100x20
)"),
            typedInto("7") + "Body");
}

TEST(keyboard_window, is_the_first_within_the_scope_when_the_focused_one_is_outside) {
  const std::string world = std::string(inbox) + R"(
        window 8 "Outbox" at 120,90 size 400x300 focused
            AXTextArea "Draft" at 130,100 size 100x20
        window 9 "Inbox 2" at 120,90 size 400x300
            AXTextArea "Second" at 130,100 size 100x20
)";
  EXPECT_EQ(typing(world, {{"CU_WINDOW", "inbox"}}), typedInto("7") + "Body");
  EXPECT_EQ(typing(world, {{"CU_WINDOW", "outbox"}}), typedInto("8") + "Draft");
  EXPECT_EQ(typing(world, {{"CU_WINDOW", "inbox 2"}}), typedInto("9") + "Second");
  EXPECT_EQ(typing(world, {{"CU_WINDOW", "drafts"}}), noWindow);
}

TEST(keyboard_window, is_the_only_sheet_on_the_window) {
  EXPECT_EQ(typing(std::string(inbox) + sheet(10, 7)), typedInto("10") + "Name 10");
}

TEST(keyboard_window, is_the_sheet_on_a_window_in_scope) {
  EXPECT_EQ(typing(std::string(inbox) + sheet(10, 7), {{"CU_WINDOW", "inbox"}}),
            typedInto("10") + "Name 10");
}

TEST(keyboard_window, with_two_sheets_is_the_window_itself) {
  EXPECT_EQ(typing(std::string(inbox) + sheet(10, 7) + sheet(11, 7)), typedInto("7") + "Body");
}

TEST(keyboard_window, with_two_sheets_on_a_sheet_is_that_sheet) {
  EXPECT_EQ(typing(std::string(inbox) + sheet(10, 7) + sheet(11, 10) + sheet(12, 10)),
            typedInto("10") + "Name 10");
}

TEST(keyboard_window, is_the_innermost_of_64_sheets_and_of_more_the_64th) {
  std::string world = inbox;
  int number = 100;
  world += sheet(number, 7);
  for (; number < 163; ++number) world += sheet(number + 1, number);
  EXPECT_EQ(typing(world), typedInto("163") + "Name 163");

  TestMac deeper(deskWith(world + sheet(164, 163) + sheet(165, 164)));
  EXPECT_EQ(seen(deeper.driver("bg-type Notes x")), typedInto("163"));
}

TEST(keyboard_window, is_known_by_its_number_whatever_else_looks_the_same) {
  EXPECT_EQ(typing(std::string(inbox) + R"(
        window 8 "Inbox" at 100,80 size 800x600
)"),
            typedInto("7") + "Body");
}

constexpr const char* unnumbered = R"(
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600 unnumbered
            AXTextArea "Body" at 120,130 size 700x400
)";

TEST(keyboard_window, without_a_number_is_known_by_title_and_frame) {
  EXPECT_EQ(typing(unnumbered), typedInto("7") + "Body");
  EXPECT_EQ(typing(std::string(inbox) + "    missing _AXUIElementGetWindow\n"),
            typedInto("7") + "Body");
  for (const char* fault :
       {"private.ax-window 1+ error -25201", "private.ax-window 1+ error -25204"}) {
    EXPECT_EQ(typing(inbox, {}, {fault}), typedInto("7") + "Body");
  }
}

TEST(keyboard_window, without_a_number_is_none_of_two_with_equal_title_and_frame) {
  const std::string twin = "        window 8 \"Inbox\" at 101.9,78.1 size 801x599";
  EXPECT_EQ(typing(unnumbered + twin + "\n"), noWindow);
  EXPECT_EQ(typing(unnumbered + twin + " off-screen\n"), noWindow);
  EXPECT_EQ(typing(unnumbered + twin + " layer 3 no-element\n"), noWindow);
  EXPECT_EQ(typing(inbox + twin + "\n    missing _AXUIElementGetWindow\n"), noWindow);
}

TEST(keyboard_window, without_a_number_is_told_from_others_by_title_frame_and_owner) {
  EXPECT_EQ(
      typing(std::string(unnumbered) + "        window 8 \"Inbox!\" at 100,80 size 800x600\n"
                                       "        window 9 \"Inbox\" at 102,80 size 800x600\n"
                                       "        window 10 \"Inbox\" at 100,82 size 800x600\n"
                                       "        window 11 \"Inbox\" at 100,80 size 802x600\n"
                                       "        window 12 \"Inbox\" at 100,80 size 800x598\n"
                                       "        window 13 at 100,80 size 800x600\n"
                                       "    app Mail pid 44\n"
                                       "        window 14 \"Inbox\" at 100,80 size 800x600\n"),
      typedInto("7") + "Body");
}

TEST(keyboard_window, without_a_number_needs_titles_that_are_told) {
  EXPECT_EQ(typing(std::string(unnumbered) + "    deny screen-recording\n"), noWindow);
  EXPECT_EQ(typing(std::string(inbox) + "    deny screen-recording\n"), typedInto("7") + "Body");
}

TEST(keyboard_window, without_a_number_and_a_title_is_known_by_its_frame) {
  EXPECT_EQ(typing(R"(
    app Notes pid 41
        window 7 at 100,80 size 800x600 unnumbered
            AXTextArea "Body" at 120,130 size 700x400
        window 8 at 90,80 size 800x600
)"),
            typedInto("7") + "Body");
}

TEST(keyboard_window, is_none_without_windows_that_accessibility_knows) {
  EXPECT_EQ(typing("    app Notes pid 41\n"), noWindow);
  EXPECT_EQ(typing("    app Notes pid 41\n        window 7 \"A\" at 1,1 size 9x9 no-element\n"),
            noWindow);
}

TEST(keyboard_window, is_none_without_a_frame_or_a_list) {
  EXPECT_EQ(typing(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600 failing AXSize -25212
)"),
            noWindow);
  EXPECT_EQ(typing(inbox, {}, {"windowserver.windows 1+ absent"}), noWindow);
  EXPECT_EQ(typing(inbox, {}, {"windowserver.windows 1+ empty"}), noWindow);
  EXPECT_EQ(typing(inbox, {}, {"windowserver.windows 1+ wrong"}), noWindow);
}

TEST(keyboard_window, is_there_off_screen_too) {
  EXPECT_EQ(typing(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600 off-screen
            AXTextArea "Body" at 120,130 size 700x400
)"),
            typedInto("7") + "Body");
}

TEST(keyboard_window, is_of_an_application_that_runs_and_shows_itself) {
  EXPECT_EQ(typing(""), noApplication);
  EXPECT_EQ(typing("    app Notes pid 41 hidden\n        window 7 \"Inbox\" at 1,1 size 9x9\n"),
            noApplication);
  for (const char* name : {"Notes", "com.example.notes", "pid:41"}) {
    TestMac mac(deskWith(inbox));
    EXPECT_EQ(seen(mac.driver("bg-type " + std::string(name) + " x")), typedInto("7"));
  }
  TestMac mac(deskWith(inbox));
  EXPECT_EQ(seen(mac.driver("bg-type pid:99 x")), noApplication);
}

TEST(keyboard_window, of_an_application_that_hangs_is_none_after_two_time_outs) {
  TestMac mac(deskWith(R"(
    app Notes pid 41 hangs
        window 7 "Inbox" at 100,80 size 800x600
)"));
  const Result run = mac.driver("bg-key Notes a");
  EXPECT_EQ(seen(run), noWindow);
  EXPECT_EQ(run.elapsed, 12'000'000);
}

TEST(keyboard_window, without_the_accessibility_permission_is_none) {
  EXPECT_EQ(typing(std::string(inbox) + "    deny accessibility\n"), noWindow);
}

}  // namespace keyboard_window_choice_test
