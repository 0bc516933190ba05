#include "input/background_text.h"

#include <gtest/gtest.h>

#include <random>

#include "base/utf16.h"
#include "platform/text.h"

namespace driver {
namespace {

using Lines = std::vector<std::string_view>;
using Pieces = std::vector<std::u16string>;

const std::string family =
    "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466";  // 11 units

std::string times(std::size_t count, const std::string& text) {
  std::string repeated;
  for (std::size_t i = 0; i < count; ++i) repeated += text;
  return repeated;
}

std::vector<std::size_t> lengths(const std::string& line) {
  std::vector<std::size_t> found;
  for (const std::u16string& piece : typedPieces(line)) found.push_back(piece.size());
  return found;
}

TEST(linesOf, divides_at_line_feeds) {
  EXPECT_EQ(linesOf(""), (Lines{""}));
  EXPECT_EQ(linesOf("a"), (Lines{"a"}));
  EXPECT_EQ(linesOf("a\nb"), (Lines{"a", "b"}));
  EXPECT_EQ(linesOf("\n"), (Lines{"", ""}));
  EXPECT_EQ(linesOf("a\n\n"), (Lines{"a", "", ""}));
}

TEST(linesOf, takes_a_carriage_return_for_part_of_the_line_feed_behind_it) {
  EXPECT_EQ(linesOf("a\r\nb"), (Lines{"a", "b"}));
  EXPECT_EQ(linesOf("\r\n\r\n"), (Lines{"", "", ""}));
  EXPECT_EQ(linesOf("a\r\r\nb"), (Lines{"a\r", "b"}));
  EXPECT_EQ(linesOf("a\n\rb"), (Lines{"a", "\rb"}));
  EXPECT_EQ(linesOf("a\rb\r"), (Lines{"a\rb\r"}));
}

TEST(linesOf, knows_no_other_line_breaks) {
  EXPECT_EQ(linesOf("a\u2028b\u2029c\u0085d\v\f"), (Lines{"a\u2028b\u2029c\u0085d\v\f"}));
}

TEST(typedPieces, of_an_empty_line_are_none) { EXPECT_EQ(typedPieces(""), Pieces{}); }

TEST(typedPieces, have_20_units_at_most) {
  EXPECT_EQ(typedPieces("hello"), Pieces{u"hello"});
  EXPECT_EQ(lengths(times(20, "a")), (std::vector<std::size_t>{20}));
  EXPECT_EQ(lengths(times(21, "a")), (std::vector<std::size_t>{20, 1}));
  EXPECT_EQ(lengths(times(45, "a")), (std::vector<std::size_t>{20, 20, 5}));
}

TEST(typedPieces, do_not_divide_a_surrogate_pair) {
  EXPECT_EQ(lengths(times(19, "a") + "\U0001F600b"), (std::vector<std::size_t>{19, 3}));
  EXPECT_EQ(lengths(times(11, "\U0001F600")), (std::vector<std::size_t>{20, 2}));
}

TEST(typedPieces, do_not_divide_what_the_user_sees_as_one_character) {
  EXPECT_EQ(lengths(times(19, "a") + "e\u0301"), (std::vector<std::size_t>{19, 2}));
  EXPECT_EQ(lengths(times(2, family)), (std::vector<std::size_t>{11, 11}));
  EXPECT_EQ(lengths(times(17, "a") + "\U0001F1EB\U0001F1F7"), (std::vector<std::size_t>{17, 4}));
  EXPECT_EQ(lengths(times(18, "a") + "\U0001F44D\U0001F3FD"), (std::vector<std::size_t>{18, 4}));
  EXPECT_EQ(lengths(times(18, "a") + "\u1112\u1161\u11AB"), (std::vector<std::size_t>{18, 3}));
}

TEST(typedPieces, leave_a_character_that_is_too_long_whole_and_alone) {
  const std::string tall = "e" + times(30, "\u0301");
  EXPECT_EQ(lengths("ab" + tall + "cd"), (std::vector<std::size_t>{2, 31, 2}));
  EXPECT_EQ(lengths(tall), (std::vector<std::size_t>{31}));
  EXPECT_EQ(lengths(tall + tall), (std::vector<std::size_t>{31, 31}));
}

TEST(typedPieces, keep_a_lone_carriage_return) { EXPECT_EQ(typedPieces("a\rb"), Pieces{u"a\rb"}); }

/// What random lines are made of: what joins with its neighbours, and what does not.
const std::string pieces[] = {
    "a",          "Z",          " ",          "\t",         "\u00E9",     "e\u0301",
    "\u0301",     "\u0323",     "\u200D",     "\uFE0F",     "\u4F60",     "\uFFFD",
    "\uFFFF",     "\U0001F600", "\U0001F468", "\U0001F469", "\U0001F3FD", "\U0001F1EB",
    "\U0001F1F7", "\u1112",     "\u1161",     "\u11AB",     "\u0E33",     "\u0915",
    "\u094D",     "\r",         "\u2028",     "\U00010000", "\U0010FFFF", "1\uFE0F\u20E3",
    family};

std::string randomLine(std::mt19937& random) {
  std::string line;
  const std::size_t count = random() % 80;
  // A bias to one part gives long runs of marks, joiners and flags.
  const std::string& favourite = pieces[random() % std::size(pieces)];
  for (std::size_t i = 0; i < count; ++i) {
    line += random() % 2 == 0 ? favourite : pieces[random() % std::size(pieces)];
  }
  return line;
}

TEST(typedPieces, of_any_line_are_all_of_it_undivided_and_as_long_as_can_be) {
  std::mt19937 random(7);
  for (int round = 0; round < 5000; ++round) {
    const std::string line = randomLine(random);
    // The ends of the characters, in units.
    std::vector<std::size_t> ends = {0};
    for (const std::string& character : text::characters(line)) {
      ends.push_back(ends.back() + utf16Length(character));
    }
    std::u16string typed;
    auto end = ends.begin();
    for (const std::u16string& piece : typedPieces(line)) {
      const auto begin = end;
      typed += piece;
      end = std::find(begin + 1, ends.end(), typed.size());
      ASSERT_NE(end, ends.end()) << round << ": a character is divided";
      ASSERT_TRUE(piece.size() <= 20 || end == begin + 1) << round << ": too long, and not alone";
      if (end + 1 == ends.end()) continue;
      ASSERT_GT(*(end + 1) - *begin, 20U) << round << ": the next character had room";
    }
    ASSERT_EQ(typed, utf16(line)) << round;
  }
}

}  // namespace
}  // namespace driver
