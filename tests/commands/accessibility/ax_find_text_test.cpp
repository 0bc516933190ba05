#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-find-text" and "ax-texts-at": where texts are, and which are at a point.
namespace ax_find_text_test {

using namespace testing_support;

std::string windowOf(const std::string& elements) {
  return "app Notes pid 41\n    window 7 at 0,0 size 900x700\n" + elements;
}

std::string found(const std::string& world, std::vector<std::string> texts,
                  const Environment& environment = {}) {
  TestMac mac(world);
  texts.insert(texts.begin(), {"ax-find-text", "Notes"});
  return seen(mac.driverWith(texts, environment));
}

std::string counted(const std::string& counts, const std::string& frames) {
  return success(R"({"counts":{)" + counts + R"(},"frames":{)" + frames + R"(},"ok":true})");
}

constexpr const char* smallFrame = R"({"height":4,"width":3,"x":1,"y":2})";

TEST(ax_find_text, counts_elements_and_tells_the_frame_of_the_first) {
  EXPECT_EQ(
      found(windowOf(R"(
        AXStaticText at 9,9 size 9x9 value "one two"
        AXGroup
            AXButton "two" at 1,2 size 3x4
            AXGroup description "twotwo two"
)"),
            {"two", "one", "three"}),
      counted(R"("one":1,"three":0,"two":3)",
              R"("one":{"height":9,"width":9,"x":9,"y":9},"two":)" + std::string(smallFrame)));
}

TEST(ax_find_text, counts_a_window_by_its_title) {
  EXPECT_EQ(found("app Notes pid 41\n    window 7 \"Inbox (3)\" at 1,2 size 3x4\n", {"Inbox"}),
            counted(R"("Inbox":1)", R"("Inbox":)" + std::string(smallFrame)));
}

TEST(ax_find_text, tells_no_frame_when_no_such_element_has_one) {
  EXPECT_EQ(
      found(windowOf("        AXGroup \"a\"\n        AXGroup \"a\" at nan,0 size 1x1\n"), {"a"}),
      counted(R"("a":2)", ""));
}

TEST(ax_find_text, joins_value_title_and_description_with_a_space) {
  const std::string world = windowOf(
      "        AXButton \"T\" value \"V\" description \"D\" help \"H\" "
      "placeholder \"P\"\n");
  EXPECT_EQ(found(world, {"V T D"}), counted(R"("V T D":1)", ""));
  EXPECT_EQ(found(world, {"VT", "T V", "H", "P"}), counted(R"("H":0,"P":0,"T V":0,"VT":0)", ""));
}

TEST(ax_find_text, joins_empty_texts_too) {
  EXPECT_EQ(
      found(windowOf("        AXButton \"\" value \"V\" description \"D\"\n"), {"V  D", "V D"}),
      counted(R"("V  D":1,"V D":0)", ""));
}

TEST(ax_find_text, leaves_out_what_is_no_text) {
  EXPECT_EQ(found(windowOf("        AXButton value 3 attribute AXTitle 4 description \"D\"\n"),
                  {"3", "4", "D"}),
            counted(R"("3":0,"4":0,"D":1)", ""));
}

TEST(ax_find_text, looks_for_the_very_bytes) {
  EXPECT_EQ(found(windowOf("        AXButton \"Caf\\u{e9} Send\"\n"),
                  {"caf", "Cafe\u0301", "Caf\u00e9", "Send ", " Send"}),
            counted("\" Send\":1,\"Cafe\u0301\":0,\"Caf\u00e9\":1,\"Send \":0,\"caf\":0", ""));
}

TEST(ax_find_text, refuses_texts_that_are_not_distinct) {
  TestMac mac(windowOf(""));
  const Result run = mac.driver("ax-find-text Notes a b a");
  EXPECT_EQ(seen(run), failure("the texts to find must be distinct"));
}

TEST(ax_find_text, tells_canonically_equivalent_texts_apart) {
  EXPECT_EQ(found(windowOf(""), {"e\u0301", "\u00e9"}), counted("\"e\u0301\":0,\"\u00e9\":0", ""));
}

TEST(ax_find_text, takes_the_first_frame_in_the_order_of_the_walk) {
  // The last window is visited first, and of siblings the last.
  EXPECT_EQ(found(R"(
    app Notes pid 41
        window 7 at 0,0 size 900x700
            AXButton "a" at 9,9 size 9x9
        window 8 at 0,0 size 900x700
            AXButton "a" at 8,8 size 8x8
            AXGroup
                AXButton "a" at 7,7 size 7x7
                AXButton "a" at 1,2 size 3x4
)",
                  {"a"}),
            counted(R"("a":4)", R"("a":)" + std::string(smallFrame)));
}

TEST(ax_find_text, sees_only_the_windows_in_scope) {
  const char* world = R"(
    app Notes pid 41
        window 7 "Inbox" at 1,2 size 3x4
        window 8 "Inbox 2" at 0,0 size 9x9
)";
  EXPECT_EQ(found(world, {"Inbox"}, {{"CU_WINDOW", "inbox"}}),
            counted(R"("Inbox":1)", R"("Inbox":)" + std::string(smallFrame)));
  EXPECT_EQ(found(world, {"Inbox"}, {{"CU_WINDOW", "no"}}), counted(R"("Inbox":0)", ""));
}

TEST(ax_find_text, ends_80_levels_below_the_windows) {
  std::string world = "app Notes pid 41\n  window 7 \"a\" at 1,2 size 3x4\n";
  for (std::size_t depth = 1; depth <= 82; ++depth) {
    world += std::string(2 + 2 * depth, ' ') + "AXGroup \"a\"\n";
  }
  EXPECT_EQ(found(world, {"a"}), counted(R"("a":81)", R"("a":)" + std::string(smallFrame)));
}

std::string textsAt(const std::string& world, const std::string& point,
                    const Environment& environment = {}) {
  TestMac mac(world);
  return seen(mac.driver("ax-texts-at Notes " + point, environment));
}

std::string texts(const std::string& list) {
  return success(R"({"ok":true,"texts":[)" + list + "]}");
}

TEST(ax_texts_at, are_those_whose_frames_contain_the_point_in_the_order_of_the_walk) {
  const std::string world = windowOf(R"(
        AXStaticText at 10,10 size 20x20 value "first"
        AXGroup "around" at 0,0 size 100x100
            AXStaticText at 10,10 size 20x20 value "second"
            AXStaticText at 30,10 size 20x20 value "beside"
        AXGroup at 0,0 size 100x100
            AXStaticText value "without a frame"
)");
  EXPECT_EQ(textsAt(world, "15 15"), texts(R"("around","second","first")"));
  EXPECT_EQ(textsAt(world, "10 10"), texts(R"("around","second","first")"));
  EXPECT_EQ(textsAt(world, "30 30"), texts(R"("around")"));
  EXPECT_EQ(textsAt(world, "29.5 15"), texts(R"("around","second","first")"));
  EXPECT_EQ(textsAt(world, "30 15"), texts(R"("around","beside")"));
  EXPECT_EQ(textsAt(world, "500 500"), texts(""));
  EXPECT_EQ(textsAt(world, "-1 -1"), texts(""));
}

TEST(ax_texts_at, skip_what_is_250000_square_points_large_but_not_what_is_in_it) {
  EXPECT_EQ(textsAt(windowOf(R"(
        AXGroup "large" at 0,0 size 500x500
            AXGroup "long" at 0,0 size 250000x1
                AXGroup "nearly" at 0,0 size 499.999x500
)"),
                    "0 0"),
            texts(R"("nearly")"));
}

TEST(ax_texts_at, join_the_texts_that_are_not_empty) {
  EXPECT_EQ(textsAt(windowOf(R"(
        AXButton "T" at 0,0 size 9x9 value "V" description "D" help "H" placeholder "P"
        AXButton "" at 0,0 size 9x9 value "V" description "D"
        AXButton at 0,0 size 9x9 value 5 attribute AXTitle true description "D"
        AXButton "" at 0,0 size 9x9 value ""
        AXButton at 0,0 size 9x9 help "H"
)"),
                    "1 1"),
            texts(R"("D","V D","V T D")"));
}

TEST(ax_texts_at, are_cut_to_200_characters) {
  std::string letters;
  for (int i = 0; i < 198; ++i) letters += "e\u0301";
  EXPECT_EQ(
      textsAt(windowOf("        AXButton \"xyz\" at 0,0 size 9x9 value \"" + letters + "\"\n"),
              "1 1"),
      texts("\"" + letters + " x\""));
}

TEST(ax_texts_at, need_a_frame_of_finite_numbers) {
  for (const char* frame : {"at nan,0 size 9x9", "at 0,0 size infx9", "at 0,0 size 9x0",
                            "at 9,9 size -9x-9", "at 0,0 size 9x9 failing AXSize -25204", ""}) {
    EXPECT_EQ(textsAt(windowOf("        AXButton \"a\" " + std::string(frame) + "\n"), "1 1"),
              texts(""))
        << frame;
  }
}

TEST(ax_texts_at, see_only_the_windows_in_scope) {
  const char* world = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 9x9
        window 8 "Draft" at 0,0 size 9x9
)";
  EXPECT_EQ(textsAt(world, "1 1"), texts(R"("Draft","Inbox")"));
  EXPECT_EQ(textsAt(world, "1 1", {{"CU_WINDOW", "inbox"}}), texts(R"("Inbox")"));
}

}  // namespace ax_find_text_test
