#include "simulator/input/happenings.h"

#include <gtest/gtest.h>

#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/world/element_text.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

constexpr const char* happeningsDesk = R"(
    display 1 1000x800
    process 900
    app Notes pid 41 frontmost
        window 7 "Inbox" at 0,0 size 300x300
            AXTextArea "Body" at 10,10 size 100x100 value "hé" focused
        window 8 "Other" at 0,0 size 300x300
    app Browser pid 42
        window 9 "Page" at 200,200 size 300x300
            AXButton "Go" at 350,350 size 50x20 press: set State "gone"
            AXStaticText "State"
    app Helper pid 43 accessory
        window 10 at 600,0 size 50x50 layer 3
    app Agent pid 44 prohibited
        window 11 at 700,0 size 50x50
    app Hidden pid 45 hidden
        window 12 at 800,0 size 50x50
)";

class happenings : public testing::Test {
 protected:
  void happen(const char* text) { simulator::happen(mac_, parseHappening(text, world_)); }
  Application& notes() { return world_.applications[0]; }
  Application& browser() { return world_.applications[1]; }
  std::string body() { return std::string(textOf(*findLabelled(notes(), "Body"))); }
  std::vector<WindowNumber> numbers() const {
    std::vector<WindowNumber> result;
    for (const Window& window : world_.windows) result.push_back(window.number);
    return result;
  }

  Mac mac_{parseWorld(happeningsDesk), 0, {}, 0, {}};
  World& world_ = mac_.world;
};

TEST_F(happenings, the_session_locks_and_leaves_the_console) {
  happen("lock");
  EXPECT_EQ(world_.session.locked, true);
  happen("unlock");
  EXPECT_EQ(world_.session.locked, std::nullopt);
  happen("leave console");
  EXPECT_EQ(world_.session.onConsole, false);
  happen("return to console");
  EXPECT_EQ(world_.session.onConsole, true);
}

TEST_F(happenings, two_clicks_that_follow_each_other_in_one_place_are_a_double_click) {
  findLabelled(browser(), "Go")->onDoubleClick =
      parseHappening("in Browser set State \"twice\"", world_).reactions;
  const auto clicksAt = [&](Microseconds second, const char* click) {
    findLabelled(browser(), "State")->attributes["AXValue"] = std::string();
    world_.lastClick.reset();
    world_.present = 0;
    happen("user click 360,360");
    world_.present = second;
    happen(click);
    return std::string(textOf(*findLabelled(browser(), "State")));
  };
  EXPECT_EQ(clicksAt(500'000, "user click 360,360"), "twice");
  EXPECT_EQ(clicksAt(500'001, "user click 360,360"), "gone");
  EXPECT_EQ(clicksAt(1'000, "user click 361,360"), "gone");
  clicksAt(1'000, "user click 360,360");
  findLabelled(browser(), "State")->attributes["AXValue"] = std::string();
  happen("user click 360,360");
  EXPECT_EQ(textOf(*findLabelled(browser(), "State")), "gone");
}

TEST_F(happenings, an_application_does_something_by_itself) {
  happen("in Browser set State \"by itself\"; in Notes set Body value of State");

  EXPECT_EQ(textOf(*findLabelled(browser(), "State")), "by itself");
  EXPECT_EQ(body(), "by itself");
}

TEST_F(happenings, processes_end_and_displays_go) {
  happen("end process 900");
  EXPECT_TRUE(world_.processes.empty());
  happen("remove displays");
  EXPECT_TRUE(world_.displays.empty());
}

TEST_F(happenings, panels_of_a_display_that_goes_are_moved_and_stay_there) {
  Cover cover;
  cover.frame = {1000, 0, 500, 400};
  world_.covers = {cover};
  happen("connect display 2 500x400 at 1000,0");
  happen("replug display 2");
  EXPECT_EQ(world_.displays.size(), 2U);
  EXPECT_EQ(world_.covers[0].frame, (Rect{0, 0, 500, 400}));
  world_.covers[0].frame = {0, 0, 1000, 800};
  happen("remove displays");
  EXPECT_EQ(world_.covers[0].frame, (Rect{0, 25, 1000, 800}));
}

TEST_F(happenings, an_application_hangs_and_recovers) {
  happen("hang Notes");
  EXPECT_TRUE(notes().hangs);
  happen("recover Notes");
  EXPECT_FALSE(notes().hangs);
}

TEST_F(happenings, a_front_application_that_quits_leaves_the_front_to_the_next_regular_one) {
  ASSERT_EQ(numbers(), (std::vector<WindowNumber>{10, 7, 8, 9, 11, 12}));

  happen("quit Notes");

  EXPECT_EQ(world_.frontmost, 42);
  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{10, 9, 11, 12}));
  EXPECT_FALSE(notes().running);
  EXPECT_EQ(findElement(notes(), 1), nullptr);

  happen("quit Browser");
  EXPECT_EQ(world_.frontmost, 0);
}

TEST_F(happenings, another_application_that_quits_leaves_the_front_alone) {
  happen("quit Browser");

  EXPECT_EQ(world_.frontmost, 41);
  EXPECT_EQ(findWindow(world_, 9), nullptr);
  quitApplication(world_, 42);
  EXPECT_EQ(world_.windows.size(), 5u);
}

TEST_F(happenings, an_application_comes_to_front_with_all_its_windows) {
  happen("front Browser");
  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{10, 9, 7, 8, 11, 12}));
  happen("front Notes");
  EXPECT_EQ(world_.frontmost, 41);
  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{10, 7, 8, 9, 11, 12}));
}

TEST_F(happenings, the_users_keys_go_to_the_front_applications_focused_text) {
  happen("user key x");
  EXPECT_EQ(body(), "héx");
  happen("user key delete");
  happen("user key backspace");
  EXPECT_EQ(body(), "h");
  happen("user key return");
  happen("user key tab");
  happen("user key space");
  happen("user key 世");
  happen("user key left");
  EXPECT_EQ(body(), "h\n\t 世");
  EXPECT_EQ(notes().elements[1].attributes["AXSelectedTextRange"], AttributeValue(ax::Range{4, 0}));
}

TEST_F(happenings, the_users_keys_reach_nobody_else) {
  happen("lock");
  happen("user key x");
  happen("unlock");
  happen("leave console");
  happen("user key x");
  happen("return to console");
  happen("hang Notes");
  happen("user key x");
  happen("recover Notes");
  notes().focusedElement = 0;
  happen("user key x");
  world_.frontmost = 0;
  happen("user key x");

  EXPECT_EQ(body(), "hé");
}

TEST_F(happenings, the_users_click_brings_one_window_to_front_and_presses) {
  happen("user click 360,360");

  EXPECT_EQ(world_.pointer, (Point{360, 360}));
  EXPECT_EQ(world_.frontmost, 42);
  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{10, 9, 7, 8, 11, 12}));
  EXPECT_EQ(textOf(*findLabelled(browser(), "State")), "gone");

  happen("user click 250,50");
  EXPECT_EQ(world_.frontmost, 41);
  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{10, 7, 9, 8, 11, 12}));
}

TEST_F(happenings, the_users_click_leaves_focus_by_record_alone) {
  notes().focusByRecord = 7;

  happen("user click 360,360");
  happen("user click 50,50");

  EXPECT_EQ(notes().focusByRecord, 7u);
}

TEST_F(happenings, some_windows_take_a_click_without_the_front_or_not_at_all) {
  happen("user click 710,10");
  EXPECT_EQ(world_.frontmost, 41);
  happen("user click 810,10");
  EXPECT_EQ(world_.frontmost, 41);
  happen("user click 999,799");
  EXPECT_EQ(world_.frontmost, 41);
  happen("lock");
  happen("user click 360,360");
  EXPECT_EQ(world_.frontmost, 41);
  EXPECT_EQ(world_.pointer, (Point{360, 360}));
}

TEST_F(happenings, the_users_pointer_hovers_over_the_front_applications_windows) {
  happen("user move 20,30");
  EXPECT_EQ(world_.pointer, (Point{20, 30}));
  EXPECT_EQ(findWindow(world_, 7)->hover, (Point{20, 30}));
  happen("user move 400,400");
  EXPECT_EQ(findWindow(world_, 9)->hover, std::nullopt);
  EXPECT_EQ(findWindow(world_, 7)->hover, std::nullopt);
}

}  // namespace

}  // namespace simulator
