#include "simulator/rules/key_target.h"

#include <gtest/gtest.h>

#include "simulator/rules/pace.h"
#include "tests/support/broken_run.h"

/// Runs that press keys into wrong windows, and the rule that each of them breaks.
namespace simulator {

namespace {

using driver::pack;
using platform::Function;
using testing_support::broken_run;
using testing_support::Sentences;

class broken_key_targets : public broken_run {
 protected:
  broken_key_targets() { client_.arguments = {"driver", "bg-key", "Notes", "ctrl+a"}; }

  /// Goes down or comes up. The 59 is control, and 0 is a.
  void postKey(std::uint32_t type, std::int64_t code) {
    postOnly(key(type, code, 0x40000), 41, Function::publicPost);
    sleep(waitAfterPost);
  }

  void postChord() {
    askForFront(mac_.world.frontmost);
    postKey(keyDown, 59);
    askForFront(mac_.world.frontmost);
    postKey(keyDown, 0);
    postKey(keyUp, 0);
    postKey(keyUp, 59);
  }

  void pressMenuItem() {
    checkSession();
    call(Function::axPerform, {pack(platform::ElementReference{41, 99}), pack("AXPress")},
         pack(ax::Outcome{}));
    sleep(100'000);
  }

  void keyRecord(char type, WindowNumber window = 7) {
    std::string record(248, '\0');
    record[0x08] = type;
    record[0x3C] = static_cast<char>(window);
    call(Function::postRecord, {pack(0), pack(41), pack(record)}, pack(0));
    if (type == 2) sleep(300'000);
  }

  void read(const char* attribute, std::optional<std::int64_t> told, Microseconds delay) {
    platform::WireReadings readings;
    if (told) readings.slots.push_back({pack(platform::ElementReference{41, *told})});
    call(Function::axAttribute, {pack(platform::ElementReference{41, 0}), pack(attribute)},
         pack(readings), delay);
  }

  void readFocusedWindow(std::optional<std::int64_t> told = std::nullopt, Microseconds delay = 0) {
    read("AXFocusedWindow", told, delay);
  }

  void readMenuBar(Microseconds delay = 0) { read("AXMenuBar", std::nullopt, delay); }

  /// With these answers to which window is key, before and after.
  void searchMenus(std::optional<std::int64_t> before = std::nullopt,
                   std::optional<std::int64_t> after = std::nullopt) {
    readFocusedWindow(before);
    readMenuBar();
    readFocusedWindow(after);
  }

  void tellNumber(std::int64_t number) {
    call(Function::axGetWindow, {pack(platform::ElementReference{41, 1})},
         pack(std::vector<std::int64_t>{0, 0, number}));
  }

  /// The user comes to a window of Notes.
  void userGoesTo(WindowNumber number) {
    mac_.world.frontmost = 41;
    mac_.world.applications[1].focusedWindow = findWindow(mac_.world, number)->element;
  }
};

constexpr const char* unlooked = "I14: keys without a look at the foreground before them";
constexpr const char* chosen = "I14: keys for a window that the user has chosen instead";

TEST_F(broken_key_targets, are_not_those_of_a_run_that_looks) {
  keyRecord(1);
  keyRecord(2);
  postChord();

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_key_targets, that_get_their_keys_without_a_look) {
  postKey(keyDown, 0);
  postKey(keyUp, 0);
  EXPECT_EQ(violations_, Sentences{unlooked});
  askForFront(40);
  postKey(keyDown, 59);
  postKey(keyDown, 0);  // what the modifiers take may be long enough for a user
  EXPECT_EQ(violations_, (Sentences{unlooked, unlooked}));
  postKey(keyUp, 0);
  postKey(keyUp, 59);
  pressMenuItem();

  EXPECT_EQ(end(), (Sentences{unlooked, unlooked, unlooked}));
}

TEST_F(broken_key_targets, that_get_their_keys_on_a_look_from_before_a_search_through_menus) {
  askForFront(40);
  searchMenus();
  pressMenuItem();

  EXPECT_EQ(end(), Sentences{unlooked});
}

TEST_F(broken_key_targets, that_become_key_while_menus_are_searched) {
  searchMenus(2, 2);
  askForFront(40);
  pressMenuItem();
  searchMenus(2, std::nullopt);
  askForFront(40);
  pressMenuItem();
  searchMenus(2, 3);  // and the one that is meant is key
  askForFront(40);
  pressMenuItem();
  EXPECT_EQ(violations_, Sentences{});
  userGoesTo(8);
  mac_.world.frontmost = 40;
  searchMenus(2, 3);
  askForFront(40);
  pressMenuItem();

  EXPECT_EQ(end(),
            Sentences{"I14: keys for another window than was key before menus were searched"});
}

TEST_F(broken_key_targets, of_which_nobody_asks_whether_they_are_key_before_and_after_a_search) {
  readMenuBar();
  EXPECT_EQ(violations_, Sentences{"I14: menus are searched without a look at the key window"});
  violations_.clear();
  askForFront(40);
  pressMenuItem();

  EXPECT_EQ(end(),
            Sentences{"I14: keys without a look at the key window since menus were searched"});
}

TEST_F(broken_key_targets, of_an_application_that_hangs_are_not_asked_for) {
  readFocusedWindow(std::nullopt, messagingTimeout);
  readMenuBar(messagingTimeout);
  askForFront(40);
  pressMenuItem();

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_key_targets, that_the_user_was_seen_to_have_left) {
  keyRecord(1);
  keyRecord(2);
  userGoesTo(8);
  postChord();

  EXPECT_EQ(end(), (Sentences{chosen, chosen}));
}

TEST_F(broken_key_targets, that_a_menu_item_is_pressed_for_all_the_same) {
  keyRecord(1);
  keyRecord(2);
  userGoesTo(8);
  askForFront(41);
  pressMenuItem();

  EXPECT_EQ(end(), Sentences{chosen});
}

TEST_F(broken_key_targets, stay_those_whose_sheets_are_read_while_the_user_is_elsewhere) {
  userGoesTo(7);
  readFocusedWindow();
  userGoesTo(8);
  const Window* inbox = findWindow(mac_.world, 7);
  platform::WireReadings children;
  children.slots.push_back({pack(platform::ElementReference{41, 0})});
  call(Function::axAttribute,
       {pack(platform::ElementReference{41, inbox->element}), pack("AXChildren")}, pack(children));
  userGoesTo(7);
  postChord();
  EXPECT_EQ(violations_, Sentences{});
  userGoesTo(8);
  postChord();

  EXPECT_EQ(end(), (Sentences{chosen, chosen}));
}

TEST_F(broken_key_targets, in_front_are_those_that_had_the_keyboard_at_first) {
  userGoesTo(7);
  readFocusedWindow();
  postChord();
  EXPECT_EQ(violations_, Sentences{});
  userGoesTo(8);
  readFocusedWindow();
  postChord();

  EXPECT_EQ(end(), (Sentences{chosen, chosen}));
}

TEST_F(broken_key_targets, are_not_those_to_which_the_user_comes) {
  keyRecord(1);
  keyRecord(2);
  userGoesTo(7);
  postChord();

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_key_targets, are_not_those_that_the_user_leaves_after_the_look) {
  keyRecord(1);
  keyRecord(2);
  askForFront(40);
  userGoesTo(8);
  postKey(keyDown, 59);

  EXPECT_EQ(violations_, Sentences{});
}

TEST_F(broken_key_targets, in_front_that_the_user_has_left) {
  userGoesTo(7);
  postChord();
  mac_.world.frontmost = 40;
  EXPECT_EQ(violations_, Sentences{});
  postChord();
  const Sentences unfocused = {"I14: keys for an application that the user has left without focus",
                               "I14: keys for an application that the user has left without focus"};
  EXPECT_EQ(violations_, unfocused);
  client_.environment["CU_FOCUS_PID"] = "41";
  postChord();
  client_.environment.clear();
  focusRecord(true);
  postChord();
  sleep(50'000);
  focusRecord(false);

  EXPECT_EQ(end(), unfocused);
}

TEST_F(broken_key_targets, are_not_known_to_be_wrong_where_the_foreground_is_not_told) {
  keyRecord(1);
  keyRecord(2);
  userGoesTo(8);
  askForFront(0);
  postKey(keyDown, 59);

  EXPECT_EQ(violations_, Sentences{});
}

TEST_F(broken_key_targets, outside_the_scope_that_come_later) {
  client_.environment["CU_WINDOW"] = "Inbox";
  keyRecord(1);
  keyRecord(2);
  userGoesTo(8);
  postChord();

  EXPECT_EQ(end(), (Sentences{chosen, "I11: keys for a window outside the scope", chosen}));
}

TEST_F(broken_key_targets, that_are_one_of_several_sheets_or_panels) {
  mac_.world = parseWorld(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,100 size 200x200 focused
        window 8 at 100,120 size 200x50 sheet of 7
        window 9 at 100,140 size 200x50 sheet of 7
        window 11 "Letter" at 500,100 size 200x200
        window 12 at 500,120 size 200x50 sheet of 11
    panel pid 50 window 60 over 11
    panel pid 51 window 61 over 11
)");
  keyRecord(1, 12);
  keyRecord(2, 12);
  EXPECT_EQ(violations_, Sentences{});
  keyRecord(1, 8);
  keyRecord(2, 8);
  EXPECT_EQ(violations_, Sentences{"I12: keys for one of several sheets"});
  std::string record(248, '\0');
  record[0x08] = 0x0D;
  record[0x3C] = 60;
  record[0x8A] = 1;
  before(Function::postRecord, {pack(0), pack(50), pack(record)});

  EXPECT_EQ(violations_, (Sentences{"I12: keys for one of several sheets",
                                    "I12: keys for one of several panels"}));
}

TEST_F(broken_key_targets, that_are_a_panel_beside_that_of_a_target_which_is_not_told_apart) {
  mac_.world = parseWorld(R"(
    app Notes pid 41 bundle com.apple.appkit.xpc.openAndSavePanelService
        window 7 "Save" at 100,100 size 200x200 focused
    app Other pid 51 bundle com.apple.appkit.xpc.openAndSavePanelService
        window 61 "Save" at 100,100 size 300x200
)");
  readFocusedWindow();
  std::string record(248, '\0');
  record[0x08] = 0x0D;
  record[0x8A] = 1;
  const auto giveFocus = [&](Pid pid, char window) {
    record[0x3C] = window;
    before(Function::postRecord, {pack(0), pack(pid), pack(record)});
  };
  giveFocus(41, 7);
  EXPECT_EQ(violations_, Sentences{});
  giveFocus(51, 61);
  EXPECT_EQ(violations_, Sentences{"I12: keys for one of several panels"});
  tellNumber(7);
  giveFocus(51, 61);

  EXPECT_EQ(violations_, Sentences{"I12: keys for one of several panels"});
}

TEST_F(broken_key_targets, for_one_of_two_windows_that_look_alike) {
  for (Window& window : mac_.world.windows) {
    if (window.number == 8) window.title = "Inbox";
  }
  keyRecord(1);
  keyRecord(2);

  EXPECT_EQ(end(), Sentences{"I12: keys for one of two windows that cannot be told apart"});
}

TEST_F(broken_key_targets, are_told_apart_by_a_list_as_far_as_its_numbers_can_be) {
  for (Window& window : mac_.world.windows) {
    if (window.number == 8) window.title = "Inbox";
    if (window.number == 8) window.listedNumber = 4'294'967'296;
  }
  keyRecord(1);
  keyRecord(2);
  EXPECT_EQ(violations_, Sentences{});
  keyRecord(1, 8);
  keyRecord(2, 8);

  EXPECT_EQ(end(), Sentences{"I12: keys for one of two windows that cannot be told apart"});
}

TEST_F(broken_key_targets, are_not_those_that_have_the_keyboard_beyond_the_end_of_the_list) {
  mac_.world = parseWorld(R"(
    app Notes pid 41 frontmost
        window 7 "Inbox" at 100,100 size 200x200
        window 8 "Inbox" at 100,100 size 200x200 focused listed as 4294967296
)");
  readFocusedWindow();
  postChord();

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_key_targets, that_have_the_keyboard_and_two_like_them_in_the_list) {
  mac_.world = parseWorld(R"(
    app Notes pid 41 frontmost
        window 6 "Inbox" at 100,100 size 200x200
        window 7 "Inbox" at 100,100 size 200x200
        window 8 "Inbox" at 100,100 size 200x200 focused listed as 4294967296
)");
  readFocusedWindow();
  postChord();

  EXPECT_EQ(end(), Sentences{"I12: keys for one of two windows that cannot be told apart"});
}

TEST_F(broken_key_targets, are_not_those_for_a_window_that_has_told_its_number) {
  for (Window& window : mac_.world.windows) {
    if (window.number == 8) window.title = "Inbox";
  }
  tellNumber(7);
  keyRecord(1);
  keyRecord(2);

  EXPECT_EQ(end(), Sentences{});
}

constexpr const char* twoThatClaimToBeSheets = R"(
    app Notes pid 41 frontmost
        window 7 "Inbox" at 100,100 size 200x200
            AXSheet "Body"
        window 8 "Inbox" at 100,100 size 200x200 sheet of 7
)";

TEST_F(broken_key_targets, are_those_below_several_elements_that_claim_to_be_sheets) {
  mac_.world = parseWorld(twoThatClaimToBeSheets);
  tellNumber(7);
  readFocusedWindow();
  postChord();

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_key_targets, are_not_those_for_one_of_several_sheets_that_has_told_its_number) {
  mac_.world = parseWorld(twoThatClaimToBeSheets);
  tellNumber(8);
  readFocusedWindow();
  postChord();

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_key_targets, are_those_below_several_sheets_also_where_the_user_has_come) {
  mac_.world = parseWorld(twoThatClaimToBeSheets);
  mac_.world.frontmost = 0;
  tellNumber(7);
  keyRecord(1);
  keyRecord(2);
  mac_.world.frontmost = 41;
  postChord();

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_key_targets, for_a_window_outside_the_scope) {
  client_.environment["CU_WINDOW"] = "Inbox";
  keyRecord(1, 8);
  keyRecord(2, 8);

  EXPECT_EQ(end(), Sentences{"I11: keys for a window outside the scope"});
}

TEST_F(broken_key_targets, are_not_those_for_a_sheet_whose_own_title_is_in_the_scope) {
  client_.environment["CU_WINDOW"] = "Inbox";
  for (Window& window : mac_.world.windows) {
    if (window.number == 7) window.sheetOf = 8;
  }
  keyRecord(1);
  keyRecord(2);

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_key_targets, for_a_sheet_without_a_title_on_a_window_outside_the_scope) {
  client_.environment["CU_WINDOW"] = "Inbox";
  for (Window& window : mac_.world.windows) {
    if (window.number == 7) window.sheetOf = 8;
    if (window.number == 7) window.title = "";
  }
  keyRecord(1);
  keyRecord(2);

  EXPECT_EQ(end(), (Sentences{"I11: keys for a window outside the scope",
                              "I12: keys for one of two windows that cannot be told apart"}));
}

}  // namespace

}  // namespace simulator
