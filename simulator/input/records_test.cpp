#include <gtest/gtest.h>

#include "simulator/input/records.h"
#include "simulator/text/parse.h"

/// Event records, byte by byte.
namespace simulator {

namespace {

constexpr const char* recordsDesk = R"(
    app Browser pid 40 frontmost
        window 5 "Start" at 0,0 size 50x50
    app Notes pid 41
        window 305419896 "Inbox" at 0,0 size 100x100
        window 7 "Other" at 0,0 size 100x100
)";

constexpr WindowNumber inbox = 0x12345678;

/// A record with the bytes that are not zero.
std::string record(std::initializer_list<std::pair<std::size_t, int>> bytes) {
  std::string text(248, '\0');
  for (const auto& [offset, value] : bytes) text[offset] = static_cast<char>(value);
  return text;
}

std::string focus(bool give) {
  return record({{0x04, 0xF8},
                 {0x08, 0x0D},
                 {0x3C, 0x78},
                 {0x3D, 0x56},
                 {0x3E, 0x34},
                 {0x3F, 0x12},
                 {0x8A, give ? 1 : 2}});
}

std::string key(int type) {
  std::string text = record({{0x04, 0xF8},
                             {0x08, type},
                             {0x3A, 0x10},
                             {0x3C, 0x78},
                             {0x3D, 0x56},
                             {0x3E, 0x34},
                             {0x3F, 0x12}});
  for (std::size_t i = 0x20; i <= 0x2F; ++i) text[i] = '\xFF';
  return text;
}

class focus_records : public testing::Test {
 protected:
  focus_records() { mac_.world = parseWorld(recordsDesk); }

  Application& notes() { return *findApplication(mac_.world, 41); }

  /// What the journal says of a record.
  std::string take(const std::string& bytes, Pid pid = 41) {
    takeRecord(mac_, pid, bytes);
    return effectLine(mac_.journal.back(), 0);
  }

  Mac mac_;
};

TEST_F(focus_records, give_and_take_focus) {
  EXPECT_EQ(take(focus(true)), "    0 ms  focus 41/305419896 give");
  EXPECT_EQ(notes().focusByRecord, inbox);
  EXPECT_EQ(take(focus(false)), "    0 ms  focus 41/305419896 take");
  EXPECT_EQ(notes().focusByRecord, 0U);
}

TEST_F(focus_records, take_focus_only_from_the_window_that_holds_it) {
  notes().focusByRecord = 7;

  EXPECT_EQ(take(focus(false)), "    0 ms  focus 41/305419896 take");

  EXPECT_EQ(notes().focusByRecord, 7U);
}

TEST_F(focus_records, in_a_pair_make_a_window_the_focused_one) {
  notes().focusedWindow = 2;

  EXPECT_EQ(take(key(1)), "    0 ms  key 41/305419896 first");
  EXPECT_EQ(notes().focusedWindow, 2);
  EXPECT_EQ(take(key(2)), "    0 ms  key 41/305419896 second");
  EXPECT_EQ(notes().focusedWindow, 1);
  EXPECT_EQ(mac_.world.frontmost, 40);
}

TEST_F(focus_records, of_a_pair_come_in_order) {
  const std::string lost =
      "    0 ms  key 41/305419896 second LOST: a second record without its first";
  notes().focusedWindow = 2;

  EXPECT_EQ(take(key(2)), lost);
  EXPECT_EQ(take(key(2)), lost);
  EXPECT_EQ(notes().focusedWindow, 2);
  take(key(1));
  take(key(2));
  EXPECT_EQ(take(key(2)), lost);
}

TEST_F(focus_records, of_a_pair_are_for_one_window) {
  std::string other = key(1);
  other.replace(0x3C, 4, std::string("\7\0\0\0", 4));

  take(other);

  EXPECT_EQ(take(key(2)),
            "    0 ms  key 41/305419896 second LOST: a second record without its first");
}

TEST_F(focus_records, with_any_byte_wrong_have_no_effect) {
  for (const std::string& correct : {focus(true), focus(false), key(1), key(2)}) {
    notes().focusByRecord = 7;
    notes().keyByRecord = inbox;
    notes().focusedWindow = 2;
    for (std::size_t i = 0; i < correct.size(); ++i) {
      SCOPED_TRACE(i);
      std::string wrong = correct;
      wrong[i] = static_cast<char>(wrong[i] ^ 0x40);

      const std::string line = take(wrong);

      const bool window = i >= 0x3C && i <= 0x3F;
      const std::string reason = window ? "no such window of the application"
                                        : "malformed record: byte " + std::to_string(i);
      EXPECT_EQ(line.substr(line.find("LOST: ") + 6), reason);
    }
    EXPECT_EQ(notes().focusByRecord, 7U);
    EXPECT_EQ(notes().keyByRecord, inbox);
    EXPECT_EQ(notes().focusedWindow, 2);
  }
}

TEST_F(focus_records, of_another_length_have_no_effect) {
  for (const std::size_t length : {0U, 8U, 138U, 247U, 249U, 256U}) {
    std::string wrong = focus(true);
    wrong.resize(length);

    EXPECT_NE(take(wrong).find("LOST: malformed record: wrong length"), std::string::npos);
  }
  EXPECT_EQ(notes().focusByRecord, 0U);
}

TEST_F(focus_records, for_a_window_of_another_process_have_no_effect) {
  EXPECT_EQ(take(focus(true), 40),
            "    0 ms  focus 40/305419896 give LOST: no such window of the application");
  EXPECT_EQ(take(focus(true), 99),
            "    0 ms  focus 99/305419896 give LOST: no such window of the application");
}

}  // namespace

}  // namespace simulator
