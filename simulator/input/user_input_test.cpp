#include "simulator/input/user_input.h"

#include <gtest/gtest.h>

#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/world/element_text.h"

namespace simulator {

namespace {

constexpr const char* userInputDesk = R"(
    pointer 10,10
    app Notes pid 41 frontmost
        menu Edit > Bold cmd b press: set Log "bold"
        window 7 "Inbox" at 0,0 size 300x300
            AXTextArea "Body" at 10,10 size 100x100 focused
            AXTextField "Secret" at 10,120 size 100x20 subrole AXSecureTextField
            AXButton "Go" at 200,200 size 50x20 press: set Log "pressed" right: set Log "asked"
            AXStaticText "Log"
    app Browser pid 42
        window 9 "Page" at 400,0 size 300x300
)";

class user_input : public testing::Test {
 protected:
  Happening happening(const char* text) { return parseHappening(text, world_); }
  void happen(const char* text) { simulator::happen(mac_, happening(text)); }
  std::vector<InputEvent> inputOf(const char* text) {
    const Happening what = happening(text);
    return what.kind->effect.input(world_, what);
  }

  /// The events of an input: name, place, deltas, tag and target as far as they are not 0.
  std::vector<std::string> events(const char* text) {
    std::vector<std::string> lines;
    for (const InputEvent& input : inputOf(text)) {
      const tap::Event& event = input.event;
      std::string line = nameOfInput(input) + " at " +
                         std::to_string(static_cast<int>(event.location.x)) + "," +
                         std::to_string(static_cast<int>(event.location.y));
      if (event.deltaX != 0 || event.deltaY != 0) {
        line += " by " + std::to_string(event.deltaX) + "," + std::to_string(event.deltaY);
      }
      if (event.sourceUserData != 0) line += " tag " + std::to_string(event.sourceUserData);
      if (event.targetProcess != 0) line += " for " + std::to_string(event.targetProcess);
      lines.push_back(line);
    }
    return lines;
  }

  std::string valueOf(const char* label) {
    return std::string(textOf(*findLabelled(world_.applications[0], label)));
  }

  Mac mac_{parseWorld(userInputDesk), 0, {}, 0, {}};
  World& world_ = mac_.world;
};

using Lines = std::vector<std::string>;

TEST_F(user_input, presses_shift_for_what_needs_it) {
  EXPECT_EQ(events("user key a"), (Lines{"key-down 0 at 10,10", "key-up 0 at 10,10"}));
  EXPECT_EQ(events("user key A"),
            (Lines{"flags with shift at 10,10", "key-down 0 with shift at 10,10",
                   "key-up 0 with shift at 10,10", "flags at 10,10"}));
  EXPECT_EQ(events("user key shift return"),
            (Lines{"flags with shift at 10,10", "key-down 36 with shift at 10,10",
                   "key-up 36 with shift at 10,10", "flags at 10,10"}));
  EXPECT_EQ(events("user key enter"), (Lines{"key-down 76 at 10,10", "key-up 76 at 10,10"}));
}

TEST_F(user_input, presses_the_keys_of_the_users_layout) {
  world_.keyboard.layout = KeyboardLayout::german;
  EXPECT_EQ(events("user key z")[0], "key-down 16 at 10,10");
  world_.keyboard.layout = KeyboardLayout::french;
  EXPECT_EQ(events("user key 2")[1], "key-down 19 with shift at 10,10");
}

TEST_F(user_input, holds_modifiers_while_they_are_held) {
  EXPECT_EQ(events("user press cmd"), Lines{"flags with cmd at 10,10"});
  EXPECT_EQ(world_.keyboard.modifiers, 0x100000U);
  EXPECT_EQ(events("user key cmd shift a"),
            (Lines{"flags with cmd+shift at 10,10", "key-down 0 with cmd+shift at 10,10",
                   "key-up 0 with cmd+shift at 10,10", "flags with cmd at 10,10"}));
  EXPECT_EQ(events("user move 10,10"), Lines{"moved at 10,10"});
  EXPECT_EQ(events("user release cmd"), Lines{"flags at 10,10"});
  EXPECT_EQ(world_.keyboard.modifiers, 0U);
}

TEST_F(user_input, moves_the_pointer_and_says_how_far) {
  EXPECT_EQ(events("user move 12,9"), Lines{"moved at 12,9 by 2,-1"});
  EXPECT_EQ(events("user click 20,20 right"),
            (Lines{"moved at 20,20 by 8,11", "right-down at 20,20", "right-up at 20,20"}));
  EXPECT_EQ(events("user click 20,20 other"), (Lines{"other-down at 20,20", "other-up at 20,20"}));
  EXPECT_EQ(events("user drag 20,20 to 30,10"),
            (Lines{"left-down at 20,20", "dragged at 30,10 by 10,-10", "left-up at 30,10"}));
  EXPECT_EQ(events("user scroll 0,-3"), Lines{"scroll at 30,10"});
  EXPECT_EQ(world_.pointer, (Point{30, 10}));
}

TEST_F(user_input, can_be_posted_by_others) {
  EXPECT_EQ(events("user key a tagged for Browser"),
            (Lines{"key-down 0 at 10,10 tag 1515475542 for 42",
                   "key-up 0 at 10,10 tag 1515475542 for 42"}));
  EXPECT_TRUE(world_.activity.lastTimes.empty());
}

TEST_F(user_input, is_remembered_by_kind) {
  world_.present = 5;
  events("user key a");
  world_.present = 7;
  events("user move 1,1");
  EXPECT_EQ(world_.activity.lastTimes,
            (std::map<std::uint32_t, std::int64_t>{{5, 7}, {10, 5}, {11, 5}}));
}

TEST_F(user_input, reaches_the_front_application) {
  happen("user key é");
  happen("user key shift b");
  happen("user key cmd b");
  EXPECT_EQ(valueOf("Body"), "éB");
  EXPECT_EQ(valueOf("Log"), "bold");
}

TEST_F(user_input, clicks_where_a_button_goes_down_and_up) {
  happen("user click 210,210");
  EXPECT_EQ(valueOf("Log"), "pressed");
  happen("user click 210,210 right");
  EXPECT_EQ(valueOf("Log"), "asked");
  happen("user drag 210,210 to 212,212");
  happen("user click 210,210 other");
  EXPECT_EQ(valueOf("Log"), "asked");
}

TEST_F(user_input, needs_a_press_for_a_release) {
  for (const InputEvent& input : inputOf("user click 210,210")) {
    if (nameOfInput(input) != "left-down") takeInput(world_, input);
  }
  EXPECT_EQ(valueOf("Log"), "");
}

TEST_F(user_input, scrolls_what_is_under_the_pointer) {
  happen("user move 500,50");
  happen("user scroll 1,-3");
  EXPECT_EQ(findWindow(world_, 9)->scrolledLines, (Point{1, -3}));
  EXPECT_EQ(findWindow(world_, 7)->scrolledLines, (Point{0, 0}));
}

TEST_F(user_input, is_secure_in_a_secure_field) {
  EXPECT_FALSE(hasSecureInput(world_));
  happen("user click 20,130");
  EXPECT_TRUE(hasSecureInput(world_));
}

TEST_F(user_input, copies) {
  happen("user copy hello");
  EXPECT_EQ(pastedText(world_.pasteboard), "hello");
  EXPECT_EQ(world_.pasteboard.changeCount, 2);
}

}  // namespace

}  // namespace simulator
