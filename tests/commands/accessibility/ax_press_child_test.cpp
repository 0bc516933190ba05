#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/simulated_run.h"

/// "ax-press-child": a control in a row, which may only show under the pointer.
namespace ax_press_child_test {

using namespace testing_support;

/// A row with three buttons, the last of which is there only under the pointer.
constexpr const char* inbox = R"(
    app Browser pid 40 frontmost
        window 5 "Start" at 1000,0 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXRow "Letter from Ada" at 110,90 size 300x40
                AXStaticText value "Reply"
                AXButton "Star" at 200,95 size 20x20 press: append "replied" to Body
                    AXStaticText value "Reply  all"
                AXGroup
                    AXButton at 260,95 size 20x20
                        AXStaticText value "Nested"
                AXButton at 300,95 size 20x20 press: append "archived" to Body
                    AXStaticText value "Archive"
                AXButton at 330,95 size 20x20 while hovered press: append "deleted" to Body
                    AXStaticText value "Delete"
            AXTextArea "Body" at 120,300 size 700x300
)";

constexpr const char* row =
    R"({"frame":{"height":40,"width":300,"x":110,"y":90},"label":"Letter from Ada","role":"AXRow"})";

constexpr const char* enabling = R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
)";

const std::string hovering = enabling + std::string(R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved 260,110 private: pointer over the window
  102 ms  focus 41/7 take
)");

Result press(TestMac& mac, std::vector<std::string> words, const Environment& environment = {}) {
  words.insert(words.begin(), {"ax-press-child", "Notes"});
  return mac.driverWith(words, environment);
}

std::string done(const std::string& text) {
  return success(R"({"axError":0,"ok":true,"pressed":")" + text + R"(","row":)" + row + "}");
}

std::string refused(const std::string& error) {
  return success(R"({"error":")" + error + R"(","ok":false})");
}

TEST(ax_press_child, hovers_waits_and_presses) {
  TestMac mac(inbox);
  const Result run = press(mac, {"letter", "archive"});
  EXPECT_EQ(seen(run), done("Archive"));
  EXPECT_EQ(run.effects, hovering + "  642 ms  action 41/7 AXPress: pressed AXButton\n");
  EXPECT_EQ(run.elapsed, 642'000);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "archived");
}

TEST(ax_press_child, finds_what_shows_only_under_the_pointer) {
  for (const char* child : {"DELETE", "last"}) {
    TestMac mac(inbox);
    EXPECT_EQ(seen(press(mac, {"Letter from Ada", child})), done("Delete"));
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "deleted");
  }
}

TEST(ax_press_child, goes_by_the_text_inside_and_not_by_the_label) {
  TestMac mac(inbox);
  EXPECT_EQ(seen(press(mac, {"letter", " reply ALL"})), done("Reply  all"));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "replied");
}

TEST(ax_press_child, tells_which_controls_there_are_when_it_has_not_that_one) {
  for (const char* child : {"Star", "Nested", "Reply", "Last", "arch"}) {
    TestMac mac(inbox);
    const Result run = press(mac, {"letter", child});
    EXPECT_EQ(seen(run), success(R"({"controls":["Reply  all","Archive","Delete"],)"
                                 R"("error":"row has no control \")" +
                                 std::string(child) + R"(\"","ok":false})"));
    EXPECT_EQ(run.effects, hovering);
  }
}

std::string rowOf(const std::string& children) {
  return R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXRow "Letter from Ada" at 110,90 size 300x40
)" + children;
}

TEST(ax_press_child, tells_of_no_controls_when_there_is_no_last_one) {
  TestMac mac(rowOf(R"(
                AXButton at 200,95 size 20x20 actions none
                    AXStaticText value "A"
                AXStaticText value "B"
)"));
  EXPECT_EQ(seen(press(mac, {"letter", "last"})),
            success(R"({"controls":[],"error":"row has no control \"last\"","ok":false})"));
}

TEST(ax_press_child, takes_the_first_of_several_with_the_text) {
  TestMac mac(rowOf(R"(
                AXLink at 200,95 size 20x20 press: append "1" to Body
                    AXStaticText value "Open"
                AXButton at 230,95 size 20x20 press: append "2" to Body
                    AXStaticText value "Open"
            AXTextArea "Body" at 120,300 size 700x300
)"));
  EXPECT_EQ(seen(press(mac, {"letter", "open"})), done("Open"));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "1");
}

TEST(ax_press_child, takes_the_very_last_of_however_many) {
  const std::string last = "                AXButton \"Ok\" at 200,95 size 20x20\n";
  TestMac mac(rowOf("                AXImage repeat 20001\n" + last));
  EXPECT_EQ(seen(press(mac, {"letter", "last"})), done(""));
  // Of 20,000 children it is asked what they offer.
  TestMac beyond(rowOf(last + "                AXImage repeat 20000\n"));
  const Result run = press(beyond, {"letter", "last"});
  EXPECT_EQ(seen(run),
            success(R"({"controls":[],"error":"row has no control \"last\"","ok":false})"));
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.action-names"), 20'000);
}

TEST(ax_press_child, looks_for_a_text_at_20000_children) {
  const std::string wanted = R"(
                AXButton at 200,95 size 20x20
                    AXStaticText value "Ok"
)";
  TestMac mac(rowOf("                AXImage repeat 19999\n" + wanted));
  EXPECT_EQ(seen(press(mac, {"letter", "ok"})), done("Ok"));
  TestMac beyond(rowOf("                AXImage repeat 20000\n" + wanted));
  EXPECT_EQ(seen(press(beyond, {"letter", "ok"})),
            success(R"({"controls":[],"error":"row has no control \"ok\"","ok":false})"));
}

TEST(ax_press_child, takes_whatever_can_be_pressed_for_a_control) {
  TestMac mac(rowOf(R"(
                AXImage at 200,95 size 20x20 actions AXShowMenu,AXPress
                AXButton at 230,95 size 20x20 actions AXShowMenu
)"));
  EXPECT_EQ(seen(press(mac, {"letter", "last"})), done(""));
}

TEST(ax_press_child, without_such_a_row_is_refused) {
  TestMac mac(inbox);
  const Result run = press(mac, {"Bill \"x\"", "last"});
  EXPECT_EQ(seen(run), refused(R"(no row matching \"Bill \"x\"\")"));
  EXPECT_EQ(run.effects, enabling);
  EXPECT_EQ(run.elapsed, 0);
}

TEST(ax_press_child, needs_the_frame_of_a_row_that_was_only_hit) {
  // Nothing has the label, and what can be edited lies at -1,-1 and hides where it is.
  TestMac mac(R"(
    app Notes pid 41
        window 7 "Inbox" at -100,-100 size 800x600
            AXRow "Letter" at -50,-50 size 100x100 failing AXSize -25204
)");
  EXPECT_EQ(seen(press(mac, {"Bill", "last"})), refused(R"(no row matching \"Bill\")"));
}

TEST(ax_press_child, needs_a_row_of_the_role_that_is_told) {
  TestMac mac(inbox);
  const Result run = press(mac, {"letter", "last", "AXCell"});
  EXPECT_EQ(seen(run), success(R"({"error":"row matching \"letter\" is not a AXCell","ok":false,)"
                               R"("row":)" +
                               std::string(row) + "}"));
  EXPECT_EQ(run.effects, enabling);
  TestMac other(inbox);
  EXPECT_EQ(seen(press(other, {"letter", "archive", "AXRow"})), done("Archive"));
}

TEST(ax_press_child, fails_when_no_window_lies_under_the_row) {
  const std::string elsewhere = R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXRow "Letter" at 2000,90 size 300x40
)";
  TestMac mac(elsewhere);
  EXPECT_EQ(seen(press(mac, {"letter", "last"})), failure("no target window for row hover"));
  TestMac gone(inbox, {"windowserver.windows 1 absent"});
  EXPECT_EQ(seen(press(gone, {"letter", "last"})), failure("no target window for row hover"));
}

TEST(ax_press_child, goes_on_when_the_pointer_could_not_be_moved) {
  TestMac mac(std::string(inbox) + "    missing CGEventSetWindowLocation\n");
  const Result run = press(mac, {"letter", "last"});
  EXPECT_EQ(seen(run), done("Archive"));
  EXPECT_EQ(run.elapsed, 500'000);
}

TEST(ax_press_child, presses_nothing_when_the_screen_locks_while_it_waits) {
  for (const char* happening : {"lock", "leave console"}) {
    TestMac mac(std::string(inbox) + "    at 600ms " + happening + "\n");
    const Result run = press(mac, {"letter", "archive"});
    EXPECT_EQ(seen(run),
              "1 {\"error\":\"the screen locked; input was withheld from the lock "
              "screen\",\"locked\":true,\"ok\":false}\n");
    EXPECT_EQ(run.effects, hovering + "  600 ms  happening " + happening + "\n");
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
  }
}

TEST(ax_press_child, presses_nothing_when_the_hover_was_withheld) {
  TestMac mac(std::string(inbox) + "    at 20ms lock\n    at 300ms unlock\n");
  const Result run = press(mac, {"letter", "archive"});
  EXPECT_EQ(seen(run),
            "1 {\"error\":\"the screen locked; input was withheld from the lock "
            "screen\",\"locked\":true,\"ok\":false}\n");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
}

TEST(ax_press_child, presses_nothing_when_the_capture_service_goes_while_it_waits) {
  TestMac mac(std::string(inbox) + "    process 900\n    at 600ms end process 900\n");
  const Result run = press(mac, {"letter", "archive"}, {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(seen(run), failure("native screen sharing stopped; background input is disabled"));
  EXPECT_EQ(run.effects, hovering + "  600 ms  happening 900/0 end process 900\n");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
}

TEST(ax_press_child, checks_the_session_right_before_it_presses) {
  TestMac mac(inbox);
  const Result run = press(mac, {"letter", "archive"});
  const auto pressCall = std::find(run.calls.begin(), run.calls.end(), "ax.perform");
  ASSERT_NE(pressCall, run.calls.end());
  EXPECT_EQ(*(pressCall - 1), "windowserver.session");
}

TEST(ax_press_child, that_fails_tells_the_platforms_code) {
  TestMac mac(inbox, {"ax.perform 1 error -25200"});
  EXPECT_EQ(seen(press(mac, {"letter", "archive"})),
            success(R"({"axError":-25200,"ok":false,"pressed":"Archive","row":)" +
                    std::string(row) + "}"));
}

TEST(ax_press_child, hovers_at_the_centre_of_the_row_in_its_scope) {
  TestMac mac(inbox);
  EXPECT_EQ(seen(press(mac, {"letter", "archive"}, {{"CU_WINDOW", "inbox"}})), done("Archive"));
  TestMac other(inbox);
  EXPECT_EQ(seen(press(other, {"letter", "archive"}, {{"CU_WINDOW", "draft"}})),
            refused(R"(no row matching \"letter\")"));
}

}  // namespace ax_press_child_test
