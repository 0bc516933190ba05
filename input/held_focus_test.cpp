#include "input/focus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "main/globals.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

using Calls = std::vector<std::string>;

constexpr const char* heldFocusDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

constexpr const char* takenBack = "    0 ms  focus 41/7 take\n";

/// Releases a hold of Notes that counts `count`; what then is left of it goes to `left`.
Result release(TestMac& mac, std::int64_t count, bool all, std::int64_t& left) {
  return runInside(mac, [&] {
    globals().heldInputFocus[41] = {count, 7};
    globals().heldInputFocus[40] = {5, 5};
    releaseInputFocus(41, all);
    const auto entry = globals().heldInputFocus.find(41);
    left = entry == globals().heldInputFocus.end() ? 0 : entry->second.count;
    if (left > 0) {
      EXPECT_EQ(entry->second.window, 7U);
    }
    EXPECT_EQ(globals().heldInputFocus.at(40).count, 5);
  });
}

bool heldFor(platform::Pid pid, const Environment& environment) {
  TestMac mac(heldFocusDesk);
  return valueInside(
      mac, [&] { return inputFocusHeld(pid); }, environment);
}

TEST(inputFocusHeld, is_false_when_nobody_holds_it) {
  EXPECT_FALSE(heldFor(41, {}));
  EXPECT_FALSE(heldFor(41, {{"CU_FOCUS_PID", ""}}));
  EXPECT_FALSE(heldFor(41, {{"CU_FOCUS_PID", "40"}}));
}

TEST(inputFocusHeld, is_true_for_a_hold_of_this_process) {
  TestMac mac(heldFocusDesk);
  const Result run = runInside(mac, [] {
    globals().heldInputFocus[41] = {1, 7};
    EXPECT_TRUE(inputFocusHeld(41));
    EXPECT_FALSE(inputFocusHeld(40));
  });
  // Only the process that is not held here is looked for in the environment.
  EXPECT_EQ(run.calls, Calls{"process.environment"});
}

TEST(inputFocusHeld, is_true_for_a_hold_of_another_process) {
  EXPECT_TRUE(heldFor(41, {{"CU_FOCUS_PID", "41"}}));
  EXPECT_TRUE(heldFor(-1, {{"CU_FOCUS_PID", "-1"}}));
}

TEST(inputFocusHeld, compares_the_process_id_as_text) {
  for (const char* value :
       {" 41", "41 ", "041", "+41", "41.0", "4", "411", "41\n", "0x29", "pid:41"}) {
    EXPECT_FALSE(heldFor(41, {{"CU_FOCUS_PID", value}})) << "'" << value << "'";
  }
}

TEST(inputFocusHeld, reads_the_variable_afresh_each_time) {
  TestMac mac(heldFocusDesk);
  const Result run = runInside(mac, [] {
    inputFocusHeld(41);
    inputFocusHeld(41);
  });
  EXPECT_EQ(run.calls, (Calls{"process.environment", "process.environment"}));
}

TEST(releaseInputFocus, does_nothing_without_a_hold) {
  TestMac mac(heldFocusDesk);
  const Result run = runInside(mac, [] {
    globals().heldInputFocus[40] = {1, 5};
    releaseInputFocus(41);
    releaseInputFocus(41, true);
    EXPECT_EQ(globals().heldInputFocus.size(), 1U);
  });
  EXPECT_EQ(run.calls, Calls{});
}

TEST(releaseInputFocus, counts_nested_holds_down_and_posts_nothing) {
  TestMac mac(heldFocusDesk);
  std::int64_t left = 0;
  const Result run = release(mac, 3, false, left);
  EXPECT_EQ(left, 2);
  EXPECT_EQ(run.calls, Calls{});
  release(mac, 2, false, left);
  EXPECT_EQ(left, 1);
}

TEST(releaseInputFocus, takes_focus_back_with_the_last_hold) {
  TestMac mac(heldFocusDesk);
  std::int64_t left = 9;
  const Result run = release(mac, 1, false, left);
  EXPECT_EQ(left, 0);
  EXPECT_EQ(run.effects, takenBack);
  EXPECT_EQ(run.elapsed, 40'000);
}

TEST(releaseInputFocus, takes_a_hold_that_counts_nothing_for_the_last) {
  TestMac mac(heldFocusDesk);
  std::int64_t left = 9;
  EXPECT_EQ(release(mac, 0, false, left).effects, takenBack);
  EXPECT_EQ(left, 0);
}

TEST(releaseInputFocus, ends_all_holds_at_once_when_asked_to) {
  TestMac mac(heldFocusDesk);
  std::int64_t left = 9;
  EXPECT_EQ(release(mac, 3, true, left).effects, takenBack);
  EXPECT_EQ(left, 0);
}

TEST(releaseInputFocus, keeps_its_counts_in_any_sequence_of_holds_and_releases) {
  constexpr int steps = 400;
  TestMac mac(heldFocusDesk);
  std::minstd_rand random(7);
  runInside(mac, [&] {
    std::map<platform::Pid, std::int64_t> expected;
    for (int step = 0; step < steps; ++step) {
      const platform::Pid pid = random() % 2 == 0 ? 40 : 41;
      const auto choice = random() % 4;
      if (choice < 2) {
        EXPECT_EQ(noteHeldFocus(pid, 5, false), expected[pid] > 0);
        ++expected[pid];
      } else {
        const bool all = choice == 3;
        releaseInputFocus(pid, all);
        expected[pid] = all ? 0 : std::max<std::int64_t>(expected[pid] - 1, 0);
      }
      std::map<platform::Pid, std::int64_t> counts = {{40, 0}, {41, 0}};
      for (const auto& [held, hold] : globals().heldInputFocus) counts[held] = hold.count;
      EXPECT_EQ(counts,
                (std::map<platform::Pid, std::int64_t>{{40, expected[40]}, {41, expected[41]}}));
    }
    releaseInputFocus(40, true);
    releaseInputFocus(41, true);
  });
}

TEST(releaseInputFocus, leaves_focus_to_the_process_in_front) {
  TestMac mac(std::string(heldFocusDesk) + "    at 0ms front Notes\n");
  std::int64_t left = 9;
  const Result run = release(mac, 1, false, left);
  EXPECT_EQ(left, 0);
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(releaseInputFocus, posts_nothing_when_the_foreground_is_unknown) {
  TestMac mac(heldFocusDesk, {"private.front-process 1 error -600"});
  std::int64_t left = 9;
  const Result run = release(mac, 1, false, left);
  EXPECT_EQ(left, 0);
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(releaseInputFocus, forgets_the_hold_before_it_takes_focus_back) {
  TestMac mac(heldFocusDesk, {"private.process-for-pid 1 error -600"});
  std::int64_t left = 9;
  EXPECT_EQ(release(mac, 1, false, left).effects, "");
  EXPECT_EQ(left, 0);
}

}  // namespace
}  // namespace driver
