#include "simulator/mac/journal.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

using Kind = JournalEntry::Kind;

const JournalEntry landedEvent{.at = 219'000,
                               .kind = Kind::event,
                               .target = 41,
                               .window = 7,
                               .what = "left-down",
                               .point = Point{130, 95.5},
                               .route = "private",
                               .landed = true,
                               .outcome = "press"};
const JournalEntry lostEvent{.at = 80'500,
                             .kind = Kind::event,
                             .target = 41,
                             .window = 7,
                             .what = "moved",
                             .point = Point{-1, -1},
                             .route = "public",
                             .landed = false,
                             .outcome = "wrong route"};
const JournalEntry record{
    .at = 40'000, .kind = Kind::focus, .target = 41, .window = 7, .what = "give", .landed = true};
const JournalEntry capture{.kind = Kind::capture, .window = 7, .what = "window"};
const JournalEntry happening{.at = 1'000, .kind = Kind::happening, .what = "lock"};
const JournalEntry file{.kind = Kind::file, .what = "/tmp/a.png"};

TEST(effectLine, says_what_was_done_and_what_came_of_it) {
  EXPECT_EQ(effectLine(landedEvent, 0), "  219 ms  post 41/7 left-down 130,95.5 private: press");
  EXPECT_EQ(effectLine(lostEvent, 0), " 80.5 ms  post 41/7 moved -1,-1 public LOST: wrong route");
  EXPECT_EQ(effectLine(record, 0), "   40 ms  focus 41/7 give");
  EXPECT_EQ(effectLine(happening, 0), "    1 ms  happening lock");
  EXPECT_EQ(effectLine(file, 0), "    0 ms  file /tmp/a.png");
}

TEST(effectLine, leaves_out_what_is_told_of_tests) {
  EXPECT_EQ(effectLine({.kind = Kind::wait, .what = "until Mail gone"}, 0), "");
  EXPECT_EQ(effectLine({.kind = Kind::failure, .text = "no answer"}, 0), "");
}

TEST(effectLine, is_relative_to_a_start_and_leaves_captures_out) {
  EXPECT_EQ(effectLine(record, 30'000), "   10 ms  focus 41/7 give");
  EXPECT_EQ(effectLine(capture, 0), "");
}

TEST(effectLine, may_be_wider_than_its_column) {
  JournalEntry late = record;
  late.at = 12'345'678;

  EXPECT_EQ(effectLine(late, 0), "12345.678 ms  focus 41/7 give");
}

TEST(journalText, names_the_process_and_has_captures_too) {
  JournalEntry own = capture;
  own.pid = 5'000'001;

  EXPECT_EQ(journalText(own), "    0 ms  5000001  capture window");
  EXPECT_EQ(journalText(happening), "    1 ms        -  happening lock");
}

TEST(effectLine, is_one_line_of_text_whatever_it_is_about) {
  JournalEntry odd = file;
  odd.what = "/tmp/a\n\xFF";

  EXPECT_EQ(effectLine(odd, 0), "    0 ms  file /tmp/a\\n\uFFFD");
}

TEST(journalLine, is_an_object_with_what_there_is) {
  EXPECT_EQ(
      journalLine(landedEvent),
      R"({"at":219.0,"kind":"event","landed":true,"number":0,"outcome":"press","point":[130.0,95.5],)"
      R"("route":"private","target":41,"what":"left-down","window":7})");
  EXPECT_EQ(journalLine(happening), R"({"at":1.0,"kind":"happening","number":0,"what":"lock"})");
}

TEST(journalLine, replaces_what_is_no_text) {
  JournalEntry odd = file;
  odd.what = "a\xFF";

  EXPECT_EQ(journalLine(odd), "{\"at\":0.0,\"kind\":\"file\",\"number\":0,\"what\":\"a\uFFFD\"}");
}

TEST(journalLine, has_bytes_that_are_no_text_in_digits) {
  JournalEntry odd{.kind = Kind::write, .what = "AXValue", .text = "a\xFF"};

  EXPECT_EQ(journalLine(odd),
            R"({"at":0.0,"kind":"write","number":0,"text":{"hex":"61ff"},"what":"AXValue"})");
  EXPECT_EQ(journalText(odd), "    0 ms        -  write AXValue <61ff>");
}

TEST(milliseconds, have_as_many_decimals_as_they_need) {
  EXPECT_EQ(milliseconds(0), "0");
  EXPECT_EQ(milliseconds(12'000), "12");
  EXPECT_EQ(milliseconds(12'500), "12.5");
  EXPECT_EQ(milliseconds(1), "0.001");
}

}  // namespace

}  // namespace simulator
