#include "simulator/world/keyboard_layouts.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

constexpr KeyboardLayout layouts[] = {KeyboardLayout::us, KeyboardLayout::german,
                                      KeyboardLayout::french, KeyboardLayout::japanese};

/// What the keys of the letters y, z, q, m and of the digit 2 with shift type.
std::string typed(KeyboardLayout layout) {
  std::string text;
  for (const std::int64_t code : {16, 6, 12, 46}) text += characterOf(layout, code, false);
  return text.append(characterOf(layout, 19, true));
}

TEST(keyboard_layouts, make_different_characters_of_the_same_keys) {
  EXPECT_EQ(typed(KeyboardLayout::us), "yzqm@");
  EXPECT_EQ(typed(KeyboardLayout::german), "zyqm\"");
  EXPECT_EQ(typed(KeyboardLayout::french), "ywa,2");
  EXPECT_EQ(typed(KeyboardLayout::japanese), "yzqm\"");
}

TEST(keyboard_layouts, type_each_character_by_the_key_that_has_it) {
  for (const KeyboardLayout layout : layouts) {
    for (std::int64_t code = 0; code < 128; ++code) {
      for (const bool shift : {false, true}) {
        const std::string_view character = characterOf(layout, code, shift);
        if (character.empty()) continue;
        const auto stroke = strokeFor(layout, character);
        ASSERT_TRUE(stroke) << character;
        EXPECT_EQ(characterOf(layout, stroke->code, stroke->shift), character);
      }
    }
  }
}

TEST(keyboard_layouts, have_no_key_for_what_they_do_not_type) {
  EXPECT_FALSE(strokeFor(KeyboardLayout::us, "é"));
  EXPECT_FALSE(strokeFor(KeyboardLayout::us, ""));
  EXPECT_FALSE(strokeFor(KeyboardLayout::german, "`"));
  EXPECT_FALSE(strokeFor(KeyboardLayout::japanese, "世"));
  EXPECT_EQ(characterOf(KeyboardLayout::us, 36, false), "");
  EXPECT_EQ(characterOf(KeyboardLayout::us, 10, false), "");
}

TEST(keyboard_layouts, tell_shifted_characters_from_plain_ones) {
  const auto stroke = strokeFor(KeyboardLayout::french, "2");
  ASSERT_TRUE(stroke);
  EXPECT_EQ(stroke->code, 19);
  EXPECT_TRUE(stroke->shift);
  EXPECT_FALSE(strokeFor(KeyboardLayout::us, "2")->shift);
}

TEST(named_keys, have_codes) {
  EXPECT_EQ(codeNamed("return"), 36);
  EXPECT_EQ(codeNamed("enter"), 76);
  EXPECT_EQ(codeNamed("backspace"), 51);
  EXPECT_EQ(codeNamed("a"), std::nullopt);
}

TEST(modifier_keys, come_in_pairs_and_have_names) {
  EXPECT_EQ(modifierWithCode(56)->name, "shift");
  EXPECT_EQ(modifierWithCode(60)->name, "shift");
  EXPECT_EQ(modifierWithCode(54)->flag, commandFlag);
  EXPECT_EQ(modifierWithCode(0), nullptr);
  EXPECT_EQ(modifierNames(commandFlag | controlFlag | shiftFlag), "cmd+shift+control");
  EXPECT_EQ(modifierNames(0), "");
}

}  // namespace

}  // namespace simulator
