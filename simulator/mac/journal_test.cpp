#include "simulator/mac/journal.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

const JournalEntry landedEvent{219'000,          "event",   41,   7,      "left-down",
                               Point{130, 95.5}, "private", true, "press"};
const JournalEntry lostEvent{80'500,   "event", 41,           7, "moved", Point{-1, -1},
                             "public", false,   "wrong route"};
const JournalEntry record{40'000, "focus", 41, 7, "give", std::nullopt, "", true, ""};
const JournalEntry capture{0, "capture", 0, 7, "window", std::nullopt, "", std::nullopt, ""};
const JournalEntry happening{1'000, "happening", 0, 0, "lock", std::nullopt, "", std::nullopt, ""};
const JournalEntry file{0, "file", 0, 0, "/tmp/a.png", std::nullopt, "", std::nullopt, ""};

TEST(effectLine, says_what_was_done_and_what_came_of_it) {
  EXPECT_EQ(effectLine(landedEvent, 0), "  219 ms  post 41/7 left-down 130,95.5 private: press");
  EXPECT_EQ(effectLine(lostEvent, 0), " 80.5 ms  post 41/7 moved -1,-1 public LOST: wrong route");
  EXPECT_EQ(effectLine(record, 0), "   40 ms  focus 41/7 give");
  EXPECT_EQ(effectLine(happening, 0), "    1 ms  happening lock");
  EXPECT_EQ(effectLine(file, 0), "    0 ms  file /tmp/a.png");
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

TEST(journalLine, is_an_object_with_what_there_is) {
  EXPECT_EQ(journalLine(landedEvent),
            R"({"at":219.0,"kind":"event","landed":true,"outcome":"press","point":[130.0,95.5],)"
            R"("route":"private","target":41,"what":"left-down","window":7})");
  EXPECT_EQ(journalLine(happening), R"({"at":1.0,"kind":"happening","what":"lock"})");
}

TEST(journalLine, replaces_what_is_no_text) {
  JournalEntry odd = file;
  odd.what = "a\xFF";

  EXPECT_EQ(journalLine(odd), "{\"at\":0.0,\"kind\":\"file\",\"what\":\"a\uFFFD\"}");
}

TEST(milliseconds, have_as_many_decimals_as_they_need) {
  EXPECT_EQ(milliseconds(0), "0");
  EXPECT_EQ(milliseconds(12'000), "12");
  EXPECT_EQ(milliseconds(12'500), "12.5");
  EXPECT_EQ(milliseconds(1), "0.001");
}

}  // namespace

}  // namespace simulator
