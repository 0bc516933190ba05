#include "accessibility/labels.h"

#include <gtest/gtest.h>

namespace driver {
namespace {

TEST(squashed, makes_every_run_of_white_space_one_space) {
  EXPECT_EQ(squashed("  Send\n Now "), "Send Now");
  EXPECT_EQ(squashed("a\t\tb\r\nc\u00A0\u3000d\u2028e"), "a b c d e");
  EXPECT_EQ(squashed("plain"), "plain");
}

TEST(squashed, of_nothing_but_white_space_is_empty) {
  EXPECT_EQ(squashed(""), "");
  EXPECT_EQ(squashed(" \n\t "), "");
}

TEST(normalizedLabel, folds_case_and_white_space) {
  EXPECT_EQ(normalizedLabel("  Send\n Now "), "send now");
  EXPECT_EQ(normalizedLabel("\u00C9COLE\u2003Normale"), "\u00E9cole normale");
  EXPECT_EQ(normalizedLabel(""), "");
  EXPECT_EQ(normalizedLabel(" \n "), "");
}

TEST(normalizedLabel, keeps_what_is_no_letter_and_no_white_space) {
  EXPECT_EQ(normalizedLabel("Save As\u2026 (\u2318S) \U0001F600"),
            "save as\u2026 (\u2318s) \U0001F600");
}

TEST(roleName, drops_one_prefix_and_folds_case) {
  EXPECT_EQ(roleName("AXButton"), "button");
  EXPECT_EQ(roleName("AXDisclosureTriangle"), "disclosuretriangle");
  EXPECT_EQ(roleName("AXAXButton"), "axbutton");
  EXPECT_EQ(roleName("AX"), "");
}

TEST(roleName, only_folds_a_role_without_the_prefix) {
  EXPECT_EQ(roleName("Button"), "button");
  EXPECT_EQ(roleName("axButton"), "axbutton");
  EXPECT_EQ(roleName("XAXButton"), "xaxbutton");
  EXPECT_EQ(roleName("A"), "a");
  EXPECT_EQ(roleName(""), "");
}

}  // namespace
}  // namespace driver
