#include "base/utf16.h"

#include <gtest/gtest.h>

namespace driver {
namespace {

// Bytes 1, 2, 3 and 4; units 1, 1, 1 and 2.
const std::string mixed = "a\u00E9\u4F60\U0001F600";

TEST(utf16, gives_the_units_of_a_text) {
  EXPECT_EQ(utf16(""), u"");
  EXPECT_EQ(utf16(mixed), u"a\u00E9\u4F60\U0001F600");
  EXPECT_EQ(utf16("\u007F\u0080\u07FF\u0800\uFFFF"), u"\u007F\u0080\u07FF\u0800\uFFFF");
  EXPECT_EQ(utf16("\U00010000\U0010FFFF"), u"\U00010000\U0010FFFF");
  EXPECT_EQ(utf16(std::string_view("a\0b", 3)), std::u16string(u"a\0b", 3));
}

TEST(utf16_length, counts_two_units_for_characters_beyond_the_basic_plane) {
  EXPECT_EQ(utf16Length(""), 0U);
  EXPECT_EQ(utf16Length("abc"), 3U);
  EXPECT_EQ(utf16Length(mixed), 5U);
  EXPECT_EQ(utf16Length("e\u0301"), 2U);  // a letter and its mark
  EXPECT_EQ(utf16Length("\u007F\u0080\u07FF\u0800\uFFFF"), 5U);
  EXPECT_EQ(utf16Length("\U00010000\U0010FFFF"), 4U);
  EXPECT_EQ(utf16Length(std::string_view("a\0b", 3)), 3U);
  EXPECT_EQ(utf16Length("a\xF0\x9F"), 3U);  // cut off
  EXPECT_EQ(utf16Length("\x80\xBF\xFF"
                        "a"),
            2U);  // no character begins with the first two
}

TEST(utf16_offset, is_the_byte_where_a_unit_begins) {
  const std::size_t offsets[] = {0, 1, 3, 6, 6, 10, 10, 10};
  for (std::size_t unit = 0; unit < std::size(offsets); ++unit) {
    EXPECT_EQ(utf16Offset(mixed, unit), offsets[unit]) << unit;
  }
  EXPECT_EQ(utf16Offset("", 0), 0U);
  EXPECT_EQ(utf16Offset("", 4), 0U);
}

TEST(utf16_replaced, puts_the_text_in_place_of_the_units) {
  EXPECT_EQ(utf16Replaced(mixed, 0, 0, "X"), "X" + mixed);
  EXPECT_EQ(utf16Replaced(mixed, 5, 0, "X"), mixed + "X");
  EXPECT_EQ(utf16Replaced(mixed, 3, 2, "X"), "a\u00E9\u4F60X");
  EXPECT_EQ(utf16Replaced(mixed, 1, 2, "\U0001F600"), "a\U0001F600\U0001F600");
  EXPECT_EQ(utf16Replaced(mixed, 0, 5, ""), "");
  EXPECT_EQ(utf16Replaced("", 0, 0, "X"), "X");
  EXPECT_EQ(utf16Replaced("abc", 1, 1, "XYZ"), "aXYZc");
}

TEST(utf16_replaced, takes_a_position_inside_a_character_for_its_beginning) {
  EXPECT_EQ(utf16Replaced(mixed, 4, 1, "X"), "a\u00E9\u4F60X");
  EXPECT_EQ(utf16Replaced(mixed, 4, 0, "X"), "a\u00E9\u4F60X\U0001F600");
  EXPECT_EQ(utf16Replaced(mixed, 2, 2, "X"), "a\u00E9X\U0001F600");
}

TEST(utf16_replaced, ends_with_the_text) {
  EXPECT_EQ(utf16Replaced("abc", 2, 99, "X"), "abX");
  EXPECT_EQ(utf16Replaced("abc", 99, 1, "X"), "abcX");
}

TEST(utf16_suffix, is_the_last_units) {
  EXPECT_EQ(utf16Suffix("abc", 2), "bc");
  EXPECT_EQ(utf16Suffix("abc", 3), "abc");
  EXPECT_EQ(utf16Suffix("abc", 4), "abc");
  EXPECT_EQ(utf16Suffix("abc", 0), "");
  EXPECT_EQ(utf16Suffix("", 3), "");
  EXPECT_EQ(utf16Suffix(mixed, 2), "\U0001F600");
  EXPECT_EQ(utf16Suffix(mixed, 3), "\u4F60\U0001F600");
}

TEST(utf16_suffix, begins_with_a_whole_character) {
  EXPECT_EQ(utf16Suffix(mixed, 1), "\U0001F600");
}

}  // namespace
}  // namespace driver
