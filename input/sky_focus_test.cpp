#include "input/sky_focus.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

using Calls = std::vector<std::string>;

constexpr const char* skyFocusDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

constexpr std::size_t recordLength = 248;

/// A record of zeros but for these bytes.
std::string record(const std::vector<std::pair<std::size_t, unsigned char>>& bytes) {
  std::string text(recordLength, '\0');
  for (const auto& [offset, byte] : bytes) text[offset] = static_cast<char>(byte);
  return text;
}

bool focusOn(TestMac& mac, platform::Pid pid, platform::WindowNumber window, bool give) {
  return valueInside(mac, [&] { return Sky::focus(pid, window, give); });
}

TEST(keyboardFocus, is_a_window_and_whether_an_element_of_it_has_the_keyboard) {
  TestMac mac(std::string(skyFocusDesk) +
              "            AXTextArea \"Body\" at 120,130 size 100x100 focused\n");
  runInside(mac, [&] {
    const Sky::KeyboardFocus found = Sky::keyboardFocus(41);
    ASSERT_TRUE(found.window);
    EXPECT_EQ(ax::hash(*found.window), ax::hash(elementOf(mac, "Notes", "Inbox")));
    EXPECT_TRUE(found.hasElement);
  });
}

TEST(sky_focus, gives_focus_by_one_record_and_waits) {
  TestMac mac(skyFocusDesk);
  const Result run = runInside(mac, [] { EXPECT_TRUE(Sky::focus(41, 7, true)); });
  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n");
  EXPECT_EQ(run.elapsed, 40'000);
  EXPECT_EQ(postedRecords(mac),
            Calls{record({{0x04, 0xF8}, {0x08, 0x0D}, {0x3C, 7}, {0x8A, 0x01}})});
}

TEST(sky_focus, takes_focus_back_by_one_record_and_waits) {
  TestMac mac(skyFocusDesk);
  const Result run = runInside(mac, [] { EXPECT_TRUE(Sky::focus(41, 7, false)); });
  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 take\n");
  EXPECT_EQ(run.elapsed, 40'000);
  EXPECT_EQ(postedRecords(mac),
            Calls{record({{0x04, 0xF8}, {0x08, 0x0D}, {0x3C, 7}, {0x8A, 0x02}})});
}

TEST(sky_focus, writes_the_window_least_significant_byte_first) {
  TestMac mac(skyFocusDesk);
  focusOn(mac, 41, 0x01234567, true);
  focusOn(mac, 41, 0xFEDCBA98, true);
  EXPECT_EQ(postedRecords(mac), (Calls{record({{0x04, 0xF8},
                                               {0x08, 0x0D},
                                               {0x3C, 0x67},
                                               {0x3D, 0x45},
                                               {0x3E, 0x23},
                                               {0x3F, 0x01},
                                               {0x8A, 0x01}}),
                                       record({{0x04, 0xF8},
                                               {0x08, 0x0D},
                                               {0x3C, 0x98},
                                               {0x3D, 0xBA},
                                               {0x3E, 0xDC},
                                               {0x3F, 0xFE},
                                               {0x8A, 0x01}})}));
}

TEST(sky_focus, looks_its_entry_points_up_before_it_asks_for_the_process) {
  TestMac mac(skyFocusDesk);
  EXPECT_EQ(runInside(mac, [] { Sky::focus(41, 7, true); }).calls,
            (Calls{"loader.open-library", "loader.find-symbol", "loader.open-library",
                   "loader.find-symbol", "private.process-for-pid", "private.post-record",
                   "loop.sleep"}));
}

TEST(sky_focus, fails_at_once_without_its_entry_points) {
  for (const char* missing :
       {"SkyLight", "SLPSPostEventRecordTo", "ApplicationServices", "GetProcessForPID"}) {
    TestMac mac(std::string(skyFocusDesk) + "    missing " + missing + "\n");
    const Result run = runInside(mac, [] { EXPECT_FALSE(Sky::focus(41, 7, true)); });
    EXPECT_EQ(run.effects, "") << missing;
    EXPECT_EQ(run.elapsed, 0) << missing;
  }
}

TEST(sky_focus, looks_for_no_second_entry_point_when_the_first_is_missing) {
  TestMac mac(std::string(skyFocusDesk) + "    missing SLPSPostEventRecordTo\n");
  EXPECT_EQ(runInside(mac, [] { Sky::focus(41, 7, true); }).calls,
            (Calls{"loader.open-library", "loader.find-symbol"}));
}

TEST(sky_focus, fails_at_once_for_a_process_without_a_serial_number) {
  TestMac mac(skyFocusDesk);
  const Result run = runInside(mac, [] { EXPECT_FALSE(Sky::focus(99, 7, true)); });
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(sky_focus, waits_also_when_the_record_is_refused) {
  TestMac mac(skyFocusDesk, {"private.post-record 1 error -600"});
  const Result run = runInside(mac, [] { EXPECT_FALSE(Sky::focus(41, 7, true)); });
  EXPECT_EQ(run.elapsed, 40'000);
  EXPECT_EQ(postedRecords(mac).size(), 1U);
}

}  // namespace
}  // namespace driver
