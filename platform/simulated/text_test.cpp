#include "platform/text.h"

#include <gtest/gtest.h>

namespace text {
namespace {

using Words = std::vector<std::string>;

TEST(lowercase, folds_letters_of_all_scripts) {
  EXPECT_EQ(lowercase(""), "");
  EXPECT_EQ(lowercase("Inbox 12"), "inbox 12");
  EXPECT_EQ(lowercase("\u00C9COLE \u0410\u0411 \u03A9"), "\u00E9cole \u0430\u0431 \u03C9");
  EXPECT_EQ(lowercase("STRASSE \u1E9E"), "strasse \u00DF");
  EXPECT_EQ(lowercase("\u4F60\U0001F600"), "\u4F60\U0001F600");
}

TEST(lowercase, is_independent_of_the_locale) {
  EXPECT_EQ(lowercase("TITLE"), "title");                // not the Turkish dotless i
  EXPECT_EQ(lowercase("\u0130"), "i\u0307");             // a dotted capital keeps its dot
  EXPECT_EQ(lowercase("\u039F\u03A3"), "\u03BF\u03C2");  // a final sigma
}

TEST(lowercase, keeps_white_space_and_zero_bytes) {
  EXPECT_EQ(lowercase("  A\n\tB "), "  a\n\tb ");
  EXPECT_EQ(lowercase(std::string_view("A\0B", 3)), std::string("a\0b", 3));
}

TEST(equal, holds_for_the_same_letters_however_composed) {
  EXPECT_TRUE(equal("", ""));
  EXPECT_TRUE(equal("caf\u00E9", "cafe\u0301"));
  EXPECT_TRUE(equal("\u212B", "A\u030A"));               // the Angstrom sign
  EXPECT_TRUE(equal("\uD55C", "\u1112\u1161\u11AB"));    // a Korean syllable
  EXPECT_TRUE(equal("e\u0323\u0302", "e\u0302\u0323"));  // marks in another order
}

TEST(equal, tells_letters_and_case_apart) {
  EXPECT_FALSE(equal("cafe", "caf\u00E9"));
  EXPECT_FALSE(equal("Notes", "notes"));
  EXPECT_FALSE(equal("a", "a "));
  EXPECT_FALSE(equal("", " "));
  EXPECT_FALSE(equal("\uFB01", "fi"));  // a ligature is only compatible
  EXPECT_FALSE(equal("\u00A0", " "));   // and so is a blank that does not break
}

TEST(canonical, composes_letters_and_orders_their_marks) {
  EXPECT_EQ(canonical(""), "");
  EXPECT_EQ(canonical("cafe\u0301"), "caf\u00E9");
  EXPECT_EQ(canonical("\u212B"), "\u00C5");  // the Angstrom sign
  EXPECT_EQ(canonical("\u1112\u1161\u11AB"), "\uD55C");
  EXPECT_EQ(canonical("e\u0302\u0323"), "\u1EC7");
  EXPECT_EQ(canonical("\uFB01 \u2026"), "\uFB01 \u2026");  // these are only compatible
  EXPECT_EQ(canonical(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

TEST(characters, are_those_that_the_user_sees) {
  EXPECT_EQ(characters(""), Words{});
  EXPECT_EQ(characters("hi !"), (Words{"h", "i", " ", "!"}));
  EXPECT_EQ(characters("e\u0301\u0323x\u00E9"), (Words{"e\u0301\u0323", "x", "\u00E9"}));
  EXPECT_EQ(characters("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7\U0001F1E9"),
            (Words{"\U0001F1E9\U0001F1EA", "\U0001F1EB\U0001F1F7", "\U0001F1E9"}));
  EXPECT_EQ(characters("\U0001F44D\U0001F3FD\U0001F468\u200D\U0001F469\u200D\U0001F467!"),
            (Words{"\U0001F44D\U0001F3FD", "\U0001F468\u200D\U0001F469\u200D\U0001F467", "!"}));
  EXPECT_EQ(characters("\u1112\u1161\u11AB\u1112"), (Words{"\u1112\u1161\u11AB", "\u1112"}));
  EXPECT_EQ(characters("a\r\nb\n\r\r"), (Words{"a", "\r\n", "b", "\n", "\r", "\r"}));
  EXPECT_EQ(characters(std::string_view("a\0b", 3)), (Words{"a", std::string(1, '\0'), "b"}));
}

TEST(prefix, counts_characters_as_the_user_sees_them) {
  EXPECT_EQ(prefix("hello", 3), "hel");
  EXPECT_EQ(prefix("hello", 5), "hello");
  EXPECT_EQ(prefix("hello", 50), "hello");
  EXPECT_EQ(prefix("hello", 0), "");
  EXPECT_EQ(prefix("", 3), "");
  EXPECT_EQ(prefix("\u00E9\u00E9\u00E9", 2), "\u00E9\u00E9");
  EXPECT_EQ(prefix("e\u0301e\u0301x", 1), "e\u0301");
  EXPECT_EQ(prefix("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", 1), "\U0001F1E9\U0001F1EA");
  EXPECT_EQ(prefix("\U0001F44D\U0001F3FDx", 1), "\U0001F44D\U0001F3FD");
  EXPECT_EQ(prefix("\U0001F468\u200D\U0001F469\u200D\U0001F467!", 1),
            "\U0001F468\u200D\U0001F469\u200D\U0001F467");
  EXPECT_EQ(prefix("a\r\nb", 2), "a\r\n");
}

TEST(prefix, keeps_zero_bytes) {
  EXPECT_EQ(prefix(std::string_view("a\0b", 3), 2), std::string("a\0", 2));
}

TEST(trimmedBlanks, drops_spaces_of_any_width_and_tabs_at_both_ends) {
  EXPECT_EQ(trimmedBlanks("  a b\t "), "a b");
  EXPECT_EQ(trimmedBlanks("\u00A0\u2003\u3000x\u202F"), "x");
  EXPECT_EQ(trimmedBlanks(""), "");
  EXPECT_EQ(trimmedBlanks(" \t "), "");
  EXPECT_EQ(trimmedBlanks(" \U0001F600 "), "\U0001F600");
}

TEST(trimmedBlanks, keeps_line_breaks) {
  EXPECT_EQ(trimmedBlanks("\n a \n"), "\n a \n");
  EXPECT_EQ(trimmedBlanks(" \r\n\v\f\u2028\u2029\u0085 "), "\r\n\v\f\u2028\u2029\u0085");
}

TEST(words, are_the_pieces_between_white_space_of_any_kind) {
  EXPECT_EQ(words("  Send\n Now "), (Words{"Send", "Now"}));
  EXPECT_EQ(words("one"), (Words{"one"}));
  EXPECT_EQ(words("a\tb\vc\fd\re\r\nf"), (Words{"a", "b", "c", "d", "e", "f"}));
  EXPECT_EQ(words("a\u00A0b\u2003c\u3000d\u2028e\u2029f\u0085g"),
            (Words{"a", "b", "c", "d", "e", "f", "g"}));
}

TEST(words, of_nothing_but_white_space_are_none) {
  EXPECT_EQ(words(""), Words{});
  EXPECT_EQ(words(" \n\t\u3000"), Words{});
}

TEST(words, do_not_end_at_invisible_characters_that_are_no_white_space) {
  EXPECT_EQ(words("a\u200Db"), (Words{"a\u200Db"}));
  EXPECT_EQ(words("a\u2060b\uFEFFc"), (Words{"a\u2060b\uFEFFc"}));
  EXPECT_EQ(words("\U0001F600 \U0001F600"), (Words{"\U0001F600", "\U0001F600"}));
}

}  // namespace
}  // namespace text
