#include "platform/macos/utf16.h"

#include <gtest/gtest.h>

TEST(utf16, converts_characters_of_every_length_both_ways) {
  const std::string text = "a\u00e9\u20ac\U0001F600\U0010FFFF";
  const std::u16string units = u"a\u00e9\u20ac\U0001F600\U0010FFFF";
  EXPECT_EQ(macos::utf16(text), units);
  EXPECT_EQ(macos::utf8(units), text);
}

TEST(utf16, converts_the_bounds_of_every_length) {
  const std::u16string units = u"\u007f\u0080\u07ff\u0800\ud7ff\ue000\uffff\U00010000";
  EXPECT_EQ(macos::utf8(units),
            "\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf\xee\x80\x80\xef\xbf\xbf\xf0\x90\x80\x80");
  EXPECT_EQ(macos::utf16(macos::utf8(units)), units);
}

TEST(utf16, keeps_null_characters) {
  EXPECT_EQ(macos::utf16(std::string("a\0b", 3)), std::u16string(u"a\0b", 3));
  EXPECT_EQ(macos::utf8(std::u16string(u"a\0b", 3)), std::string("a\0b", 3));
}

TEST(utf16, replaces_surrogates_without_a_partner) {
  const char16_t high = 0xD83D;
  const char16_t low = 0xDE00;
  EXPECT_EQ(macos::utf8(std::u16string{high}), "\uFFFD");
  EXPECT_EQ(macos::utf8(std::u16string{low}), "\uFFFD");
  EXPECT_EQ(macos::utf8(std::u16string{high, u'a'}), "\uFFFDa");
  EXPECT_EQ(macos::utf8(std::u16string{low, high}), "\uFFFD\uFFFD");
  EXPECT_EQ(macos::utf8(std::u16string{high, high, low}), "\uFFFD\U0001F600");
}

TEST(utf16, replaces_ill_formed_bytes) { EXPECT_EQ(macos::utf16("a\xff\xc3"), u"a\uFFFD\uFFFD"); }
