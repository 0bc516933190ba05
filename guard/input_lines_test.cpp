#include "guard/lock_guard.h"

#include <gtest/gtest.h>

namespace driver {
namespace {

constexpr std::optional<bool> nothing;

TEST(guard_lines, say_operating_or_minding) {
  EXPECT_EQ(GuardInput().feed("operating\n"), true);
  EXPECT_EQ(GuardInput().feed("minding\n"), false);
  EXPECT_EQ(GuardInput().feed(" \t operating \t\n"), true);
  EXPECT_EQ(GuardInput().feed("\tminding\n"), false);
}

TEST(guard_lines, that_are_anything_else_say_nothing) {
  for (const char* line :
       {"\n", " \n", "Operating\n", "OPERATING\n", "operating\r\n", "\roperating\n",
        "operating operating\n", "operating minding\n", "op erating\n", "operatingx\n",
        "xoperating\n", "minding.\n", "mindin\n", "\xFFoperating\n", "operating\xFF\n",
        "\xC2\xA0operating\n", "operating", "operating\v\n", "operating\f\n"}) {
    EXPECT_EQ(GuardInput().feed(line), nothing) << line;
  }
  EXPECT_EQ(GuardInput().feed(std::string_view("operating\0\n", 11)), nothing);
}

TEST(guard_lines, do_not_count_before_their_line_feed) {
  GuardInput input;
  EXPECT_EQ(input.feed("operating"), nothing);
  EXPECT_EQ(input.feed(""), nothing);
  EXPECT_EQ(input.feed("\n"), true);
}

TEST(guard_lines, may_be_cut_anywhere) {
  const std::string text = "x\n operating \nlonger than any word\nminding\n";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    GuardInput input;
    std::optional<bool> last = input.feed(text.substr(0, cut));
    if (const auto said = input.feed(text.substr(cut))) last = said;
    EXPECT_EQ(last, false) << cut;
  }
}

TEST(guard_lines, that_come_together_leave_the_last_that_says_something) {
  EXPECT_EQ(GuardInput().feed("operating\nminding\n"), false);
  EXPECT_EQ(GuardInput().feed("minding\noperating\nnonsense\n\n"), true);
}

TEST(guard_lines, begin_afresh_after_a_long_one) {
  GuardInput input;
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(input.feed(std::string(10'000, 'o')), nothing);
  EXPECT_EQ(input.feed("\noperating\n"), true);
}

}  // namespace
}  // namespace driver
