#include "base/utf8.h"

#include <gtest/gtest.h>

namespace driver {
namespace {

const std::string mark = "\uFFFD";

struct Repair {
  std::string bytes;
  std::string repaired;
};

TEST(utf8, leaves_well_formed_text_as_it_is) {
  for (const std::string text :
       {"",           "plain",      "caf\u00E9",  "cafe\u0301", "\u4F60\u597D", "\U0001F600",
        "\u0080",     "\u07FF",     "\u0800",     "\uD7FF",     "\uE000",       "\uFFFD",
        "\uFFFF",     "\U00010000", "\U0003FFFF", "\U00040000", "\U000FFFFF",   "\U00100000",
        "\U0010FFFF", "\x7F",       "\u0FFF",     "\u1000",     "\uCFFF",       "\uD000",
        "\uEFFF",     "\uF000"}) {
    EXPECT_TRUE(isUtf8(text)) << text;
    EXPECT_EQ(repairedUtf8(text), text);
  }
  const std::string withZero("a\0b", 3);
  EXPECT_TRUE(isUtf8(withZero));
  EXPECT_EQ(repairedUtf8(withZero), withZero);
}

TEST(utf8, puts_one_replacement_for_each_maximal_ill_formed_part) {
  const Repair repairs[] = {
      {"\x80", mark},             // a stray continuation
      {"\xBF\xBF", mark + mark},  //
      {"\xFF", mark},             // bytes that never occur
      {"\xFE\xFE", mark + mark},  //
      {"\xF8\x88\x80\x80\x80", mark + mark + mark + mark + mark},
      {"\xC0\xAF", mark + mark},             // overlong forms
      {"\xC1\xBF", mark + mark},             //
      {"\xE0\x80\xAF", mark + mark + mark},  //
      {"\xE0\x9F\xBF", mark + mark + mark},  //
      {"\xF0\x80\x80\xAF", mark + mark + mark + mark},
      {"\xF0\x8F\xBF\xBF", mark + mark + mark + mark},
      {"\xED\xA0\x80", mark + mark + mark},             // surrogates
      {"\xED\xBF\xBF", mark + mark + mark},             //
      {"\xF4\x90\x80\x80", mark + mark + mark + mark},  // above U+10FFFF
      {"\xF5\x80\x80\x80", mark + mark + mark + mark},
      {"\xC3", mark},                             // cut ends
      {"\xE2\x82", mark},                         //
      {"\xF0\x9F\x98", mark},                     //
      {"\xE2\x82z", mark + "z"},                  // cut in the middle
      {"\xF0\x9F\x98z", mark + "z"},              //
      {"\xC3\xC3\xA9", mark + "\u00E9"},          //
      {"\xE2\x82\xE2\x82\xAC", mark + "\u20AC"},  //
      {"\xF0\x9F\x80", mark},                     //
      {"a\x80z", "a" + mark + "z"},
  };
  for (const Repair& repair : repairs) {
    EXPECT_FALSE(isUtf8(repair.bytes)) << testing::PrintToString(repair.bytes);
    EXPECT_EQ(repairedUtf8(repair.bytes), repair.repaired) << testing::PrintToString(repair.bytes);
  }
}

TEST(utf8, ends_where_its_view_ends) {
  const std::string_view character = "\u00E9";
  EXPECT_FALSE(isUtf8(character.substr(0, 1)));
  EXPECT_EQ(repairedUtf8(character.substr(0, 1)), mark);
}

TEST(utf8, repairs_every_sequence_of_two_bytes_into_well_formed_text) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
      const std::string repaired = repairedUtf8(bytes);
      ASSERT_TRUE(isUtf8(repaired)) << first << " " << second;
      ASSERT_EQ(repaired == bytes, isUtf8(bytes)) << first << " " << second;
      ASSERT_EQ(repairedUtf8(repaired), repaired) << first << " " << second;
    }
  }
}

}  // namespace
}  // namespace driver
