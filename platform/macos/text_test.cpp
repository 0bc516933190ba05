#include "platform/text.h"

#include "platform/macos/standins/fixture.h"

namespace {

using Words = std::vector<std::string>;

class Text : public standins::AdapterTest {};
using lowercase = Text;
using equal = Text;
using canonical = Text;
using characters = Text;
using prefix = Text;
using trimmedBlanks = Text;
using words = Text;

const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
const std::string flag = "\U0001F1EB\U0001F1F7";

}  // namespace

TEST_F(lowercase, folds_every_script_without_a_locale) {
  EXPECT_EQ(text::lowercase("SEND \u00c9\u0416 I"), "send \u00e9\u0436 i");
  EXPECT_EQ(text::lowercase(""), "");
}

TEST_F(equal, compares_by_canonical_equivalence) {
  EXPECT_TRUE(text::equal("", ""));
  EXPECT_TRUE(text::equal("caf\u00e9", "cafe\u0301"));
  EXPECT_FALSE(text::equal("caf\u00e9", "cafe"));
  EXPECT_FALSE(text::equal("cafe", "Cafe"));
  EXPECT_FALSE(text::equal("\ufb01", "fi"));
}

TEST_F(canonical, composes_letters_and_orders_their_marks) {
  EXPECT_EQ(text::canonical(""), "");
  EXPECT_EQ(text::canonical("cafe\u0301"), "caf\u00e9");
  EXPECT_EQ(text::canonical("e\u0302\u0323"), "\u1ec7");
  EXPECT_EQ(text::canonical("\ufb01"), "\ufb01");
}

TEST_F(characters, are_those_that_the_user_sees) {
  EXPECT_EQ(text::characters(""), Words{});
  EXPECT_EQ(text::characters("a\r\nb\n\r"), (Words{"a", "\r\n", "b", "\n", "\r"}));
  EXPECT_EQ(text::characters("e\u0301x" + family + flag + flag),
            (Words{"e\u0301", "x", family, flag, flag}));
}

TEST_F(prefix, counts_characters_as_the_user_sees_them) {
  EXPECT_EQ(text::prefix("abc", 2), "ab");
  EXPECT_EQ(text::prefix("abc", 3), "abc");
  EXPECT_EQ(text::prefix("abc", 0), "");
  EXPECT_EQ(text::prefix("", 5), "");
  EXPECT_EQ(text::prefix("e\u0301e\u0301e", 2), "e\u0301e\u0301");
  EXPECT_EQ(text::prefix(family + flag + "x", 1), family);
  EXPECT_EQ(text::prefix(family + flag + "x", 2), family + flag);
  EXPECT_EQ(text::prefix(family + flag + "x", 9), family + flag + "x");
}

TEST_F(prefix, takes_a_line_end_of_two_characters_for_one) {
  EXPECT_EQ(text::prefix("a\r\nb", 2), "a\r\n");
  EXPECT_EQ(text::prefix("a\n\rb", 2), "a\n");
  EXPECT_EQ(text::prefix("\r\n\r\n\n", 2), "\r\n\r\n");
}

TEST_F(trimmedBlanks, takes_blanks_off_both_ends_but_no_line_breaks) {
  EXPECT_EQ(text::trimmedBlanks(" \t\u00a0\u3000a \u2009b\u2003\u202f\u205f\u1680 "), "a \u2009b");
  EXPECT_EQ(text::trimmedBlanks(" \na\n "), "\na\n");
  EXPECT_EQ(text::trimmedBlanks(" \t "), "");
  EXPECT_EQ(text::trimmedBlanks(""), "");
  EXPECT_EQ(text::trimmedBlanks("\u200ba"), "\u200ba");
}

TEST_F(words, are_parted_by_white_space_of_any_kind) {
  EXPECT_EQ(text::words(" a\tb\nc\r\nd\u2028e\u00a0f\u0085g\vh\fi\u2029"),
            (Words{"a", "b", "c", "d", "e", "f", "g", "h", "i"}));
  EXPECT_EQ(text::words("\U0001F600 \u00e9"), (Words{"\U0001F600", "\u00e9"}));
  EXPECT_EQ(text::words(" \n "), Words{});
  EXPECT_EQ(text::words(""), Words{});
}
