#include <gtest/gtest.h>

#include "input/sky_focus.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using platform::Function;

using Calls = std::vector<std::string>;

constexpr const char* keyWindowDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400 focused
        window 8 "Draft" at 200,80 size 800x600
)";

/// Notes has a focused window, and nothing in it has the focus.
constexpr const char* deskWithoutFocusedElement = R"(
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

constexpr const char* bothRecords = "    0 ms  key 41/7 first\n    0 ms  key 41/7 second\n";

std::string keyRecord(unsigned char type, const std::string& window) {
  std::string text(248, '\0');
  text[0x04] = '\xF8';
  text[0x08] = static_cast<char>(type);
  text.replace(0x20, 16, 16, '\xFF');
  text[0x3A] = '\x10';
  text.replace(0x3C, 4, window);
  return text;
}

TEST(makeKey, does_nothing_for_the_key_window_with_a_focused_element) {
  TestMac mac(keyWindowDesk);
  const Result run = runInside(mac, [] { EXPECT_TRUE(Sky::makeKey(41, 7)); });
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
  EXPECT_EQ(run.calls, (Calls{"ax.attributes", "loader.open-library", "loader.find-symbol",
                              "loop.uptime", "private.ax-window"}));
}

TEST(makeKey, posts_two_records_for_another_window_and_waits) {
  TestMac mac(keyWindowDesk);
  const Result run = runInside(mac, [] { EXPECT_TRUE(Sky::makeKey(41, 8)); });
  EXPECT_EQ(run.effects, "    0 ms  key 41/8 first\n    0 ms  key 41/8 second\n");
  EXPECT_EQ(run.elapsed, 300'000);
  const std::string window("\x08\0\0\0", 4);
  EXPECT_EQ(postedRecords(mac), (Calls{keyRecord(1, window), keyRecord(2, window)}));
}

TEST(makeKey, writes_the_window_least_significant_byte_first) {
  TestMac mac(keyWindowDesk);
  runInside(mac, [] { EXPECT_TRUE(Sky::makeKey(41, 0x89ABCDEF)); });
  EXPECT_EQ(postedRecords(mac),
            (Calls{keyRecord(1, "\xEF\xCD\xAB\x89"), keyRecord(2, "\xEF\xCD\xAB\x89")}));
}

TEST(makeKey, posts_for_the_key_window_when_nothing_in_it_has_the_focus) {
  TestMac mac(deskWithoutFocusedElement);
  const Result run = runInside(mac, [] { EXPECT_TRUE(Sky::makeKey(41, 7)); });
  EXPECT_EQ(run.effects, bothRecords);
  EXPECT_EQ(run.elapsed, 300'000);
}

TEST(makeKey, posts_when_the_focus_cannot_be_read) {
  for (const char* fault : {"ax.attributes 1 error -25202", "ax.attributes 1 error -25211",
                            "ax.attributes 1 wrong", "private.ax-window 1 error -25201"}) {
    TestMac mac(keyWindowDesk, {fault, "ax.attribute 1+ error -25211"});
    const Result run = runInside(mac, [] { EXPECT_TRUE(Sky::makeKey(41, 7)); });
    EXPECT_EQ(run.effects, bothRecords) << fault;
    EXPECT_EQ(run.elapsed, 300'000) << fault;
  }
}

TEST(makeKey, posts_when_the_windows_number_cannot_be_asked_for) {
  TestMac mac(std::string(keyWindowDesk) + "    missing _AXUIElementGetWindow\n");
  const Result run = runInside(mac, [] { EXPECT_TRUE(Sky::makeKey(41, 7)); });
  EXPECT_EQ(run.effects, bothRecords);
}

TEST(makeKey, takes_number_0_for_no_key_window) {
  TestMac mac(keyWindowDesk);
  runInside(mac, [] {
    const FixedAnswer answer(Function::axGetWindow, pack(std::vector<std::int64_t>{0, 0, 0}));
    EXPECT_TRUE(Sky::makeKey(41, 0));
  });
  EXPECT_EQ(postedRecords(mac).size(), 2U);
}

TEST(makeKey, fails_at_once_without_its_entry_points) {
  for (const char* missing : {"SkyLight", "SLPSPostEventRecordTo", "GetProcessForPID"}) {
    TestMac mac(std::string(keyWindowDesk) + "    missing " + missing + "\n");
    const Result run = runInside(mac, [] {
      EXPECT_FALSE(Sky::makeKey(41, 8));
      EXPECT_TRUE(Sky::makeKey(41, 7));  // which needs none of them
    });
    EXPECT_EQ(run.effects, "") << missing;
    EXPECT_EQ(run.elapsed, 0) << missing;
  }
}

TEST(makeKey, fails_at_once_for_a_process_without_a_serial_number) {
  TestMac mac(keyWindowDesk, {"private.process-for-pid 1 error -600"});
  const Result run = runInside(mac, [] { EXPECT_FALSE(Sky::makeKey(41, 8)); });
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(makeKey, stops_at_a_refused_record) {
  TestMac first(keyWindowDesk, {"private.post-record 1 error -600"});
  const Result afterFirst = runInside(first, [] { EXPECT_FALSE(Sky::makeKey(41, 8)); });
  EXPECT_EQ(postedRecords(first).size(), 1U);
  EXPECT_EQ(afterFirst.elapsed, 0);

  TestMac second(keyWindowDesk, {"private.post-record 2 error -600"});
  const Result afterSecond = runInside(second, [] { EXPECT_FALSE(Sky::makeKey(41, 8)); });
  EXPECT_EQ(postedRecords(second).size(), 2U);
  EXPECT_EQ(afterSecond.elapsed, 0);
}

TEST(makeKey, makes_the_window_the_applications_focused_one) {
  TestMac mac(keyWindowDesk);
  runInside(mac, [] { Sky::makeKey(41, 8); });
  const auto& notes = mac.world().applications.at(1);
  EXPECT_EQ(notes.focusedWindow, simulator::findWindow(mac.world(), 8)->element);
  EXPECT_EQ(mac.world().frontmost, 40);
}

}  // namespace
}  // namespace driver
