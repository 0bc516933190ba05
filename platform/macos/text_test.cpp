#include "platform/text.h"

#include "platform/macos/standins/fixture.h"
#include "tests/support/text_cases.h"

namespace {

class Text : public standins::AdapterTest {};
using lowercase = Text;
using equal = Text;
using canonical = Text;
using characters = Text;
using prefix = Text;
using trimmedBlanks = Text;
using words = Text;

}  // namespace

TEST_F(lowercase, folds_letters_of_all_scripts_without_a_locale) {
  for (const auto& c : text_cases::lowercase) {
    EXPECT_EQ(text::lowercase(c.given), c.expected) << c.given;
  }
}

TEST_F(equal, holds_for_the_same_letters_however_composed) {
  for (const auto& c : text_cases::equal) {
    EXPECT_EQ(text::equal(c.a, c.b), c.expected) << c.a << " and " << c.b;
  }
}

TEST_F(canonical, composes_letters_and_orders_their_marks) {
  for (const auto& c : text_cases::canonical) {
    EXPECT_EQ(text::canonical(c.given), c.expected) << c.given;
  }
}

TEST_F(characters, are_those_that_the_user_sees) {
  for (const auto& c : text_cases::characters) {
    EXPECT_EQ(text::characters(c.given), c.expected) << c.given;
  }
}

TEST_F(prefix, counts_characters_as_the_user_sees_them) {
  for (const auto& c : text_cases::prefix) {
    EXPECT_EQ(text::prefix(c.given, c.count), c.expected) << c.given;
  }
}

TEST_F(trimmedBlanks, drops_blanks_of_any_width_at_both_ends_but_no_line_breaks) {
  for (const auto& c : text_cases::trimmedBlanks) {
    EXPECT_EQ(text::trimmedBlanks(c.given), c.expected) << c.given;
  }
}

TEST_F(words, are_the_pieces_between_white_space_of_any_kind) {
  for (const auto& c : text_cases::words) EXPECT_EQ(text::words(c.given), c.expected) << c.given;
}
