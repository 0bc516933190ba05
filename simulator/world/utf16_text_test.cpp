#include "simulator/world/utf16_text.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

TEST(utf16_text, becomes_utf8) {
  EXPECT_EQ(utf8Of(u"a\u00E9\u20AC\U0001F600\U0010FFFF"), "aé€😀\xF4\x8F\xBF\xBF");
  EXPECT_EQ(utf8Of(u""), "");
}

TEST(utf16_text, shows_a_character_that_was_cut) {
  const char16_t cut[] = {u'a', 0xD83D, u'b', 0xDE00, 0xD83D};
  EXPECT_EQ(utf8Of({cut, 5}),
            "a\uFFFD"
            "b\uFFFD\uFFFD");
}

TEST(utf16_text, travels_low_byte_first) {
  EXPECT_EQ(unitsOf(std::string_view("a\0\xAC\x20", 4)), u"a\u20AC");
  EXPECT_EQ(unitsOf(std::string_view("a\0b", 3)), u"a");
}

}  // namespace

}  // namespace simulator
