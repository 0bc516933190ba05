#include "input/keys.h"

#include <gtest/gtest.h>

#include "main/replies.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

constexpr std::uint64_t shift = 0x20000;
constexpr std::uint64_t control = 0x40000;
constexpr std::uint64_t option = 0x80000;
constexpr std::uint64_t command = 0x100000;

/// What is wrong with a text; empty when it is a combination.
std::string complaint(const std::string& combination) {
  try {
    keyCombination(combination);
    return "";
  } catch (const InputFailure& failure) {
    return failure.message();
  }
}

TEST(keyCombination, is_one_key_with_its_modifiers) {
  EXPECT_EQ(keyCombination("a"), (KeyCombination{0, 0}));
  EXPECT_EQ(keyCombination("return"), (KeyCombination{36, 0}));
  EXPECT_EQ(keyCombination("cmd+s"), (KeyCombination{1, command}));
  EXPECT_EQ(keyCombination("shift+return"), (KeyCombination{36, shift}));
  EXPECT_EQ(keyCombination("ctrl+alt+cmd+shift+up"),
            (KeyCombination{126, shift | control | option | command}));
  EXPECT_EQ(keyCombination("super+command+meta+cmd+`"), (KeyCombination{50, command}));
}

TEST(keyCombination, takes_any_case) {
  EXPECT_EQ(keyCombination("Cmd+Shift+S"), (KeyCombination{1, command | shift}));
  EXPECT_EQ(keyCombination("PageDown"), (KeyCombination{121, 0}));
  EXPECT_EQ(keyCombination("\u212A"), (KeyCombination{40, 0}));  // the Kelvin sign's small letter
}

TEST(keyCombination, takes_its_words_in_any_order) {
  EXPECT_EQ(keyCombination("s+cmd"), (KeyCombination{1, command}));
  EXPECT_EQ(keyCombination("shift+tab+opt"), (KeyCombination{48, shift | option}));
}

TEST(keyCombination, takes_the_last_of_several_keys) {
  EXPECT_EQ(keyCombination("cmd+a+b"), (KeyCombination{11, command}));
  EXPECT_EQ(keyCombination("a+b+shift+a"), (KeyCombination{0, shift}));
}

TEST(keyCombination, drops_empty_pieces) {
  EXPECT_EQ(keyCombination("+a"), (KeyCombination{0, 0}));
  EXPECT_EQ(keyCombination("a+"), (KeyCombination{0, 0}));
  EXPECT_EQ(keyCombination("++cmd+++a++"), (KeyCombination{0, command}));
}

TEST(keyCombination, needs_a_key) {
  EXPECT_EQ(complaint(""), "no key in combo: ");
  EXPECT_EQ(complaint("+"), "no key in combo: +");
  EXPECT_EQ(complaint("shift"), "no key in combo: shift");
  EXPECT_EQ(complaint("Cmd++"), "no key in combo: Cmd++");
  EXPECT_EQ(complaint("cmd+shift"), "no key in combo: cmd+shift");
}

TEST(keyCombination, names_the_first_word_that_it_does_not_know) {
  EXPECT_EQ(complaint("cmd+f13"), "unknown key: f13");
  EXPECT_EQ(complaint("F13+Plus"), "unknown key: f13");
  EXPECT_EQ(complaint("cmd+ a"), "unknown key:  a");
  EXPECT_EQ(complaint("cmd-a"), "unknown key: cmd-a");
  EXPECT_EQ(complaint("\u00C9"), "unknown key: \u00E9");
  EXPECT_EQ(complaint("\uFF0B"), "unknown key: \uFF0B");  // a full-width plus divides nothing
}

/// What becomes of a shortcut of Notes that is meant for this window, when this happens.
std::string pressedFor(platform::WindowNumber window, const std::vector<std::string>& faults) {
  testing_support::TestMac mac(
      R"(
    app Browser pid 40 frontmost
    app Notes pid 41
        menu File > Save cmd s
        window 7 "Inbox" at 100,80 size 300x300
        window 8 "Outbox" at 500,80 size 300x300
)",
      faults);
  return testing_support::valueInside(mac, [&]() -> std::string {
    try {
      return key("cmd+s", KeyboardInput({41, window})) ? "pressed" : "withheld";
    } catch (const InputFailure& failure) {
      return failure.message();
    }
  });
}

/// The user comes to Outbox and goes again while the menus are searched.
const std::vector<std::string> visitOfOutbox = {"ax.attributes 2 before user click 600,200",
                                                "ax.attributes 3 before front Browser"};

TEST(key, is_not_pressed_when_another_window_has_become_key_while_menus_were_searched) {
  EXPECT_EQ(pressedFor(7, visitOfOutbox),
            "another window of the target app has become key; nothing was pressed");
}

TEST(key, is_pressed_when_the_window_that_is_meant_has_become_key) {
  EXPECT_EQ(pressedFor(8, visitOfOutbox), "pressed");
}

TEST(key, is_pressed_when_it_cannot_be_told_which_window_was_key) {
  EXPECT_EQ(pressedFor(7, {"ax.attribute 1 error -25212"}), "pressed");
}

}  // namespace
}  // namespace driver
