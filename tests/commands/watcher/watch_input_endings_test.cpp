#include <gtest/gtest.h>

#include "tests/support/inside.h"
#include "tests/support/watching.h"

/// How a watch of the user's input ends, and what it lives through.
namespace {

using namespace testing_support;

/// A watcher on a Mac where this happens, and nothing closes its input.
Result endlessWatch(const std::vector<std::string>& happenings) {
  std::string world(watchedDesk);
  for (const std::string& happening : happenings) world += "at " + happening + "\n";
  TestMac mac(world, {}, Mode::direct);
  return watch(mac, {});
}

std::size_t timesEnabled(const std::vector<std::string>& happenings) {
  TestMac mac(watchedDeskWith(happenings), {}, Mode::direct);
  watch(mac, {});
  return callsOf(mac, platform::Function::enableTap).size();
}

TEST(watch_input_ending, comes_when_its_input_is_closed) {
  const Result run = endlessWatch({"1s user key a", "2500ms close input", "2500001us user key b"});
  EXPECT_EQ(seen(run), reports({report("key", 1000)}));
  EXPECT_EQ(run.elapsed, 2'500'000);
}

TEST(watch_input_ending, does_not_come_before) {
  const Result run = endlessWatch({"1s user key a", "2s input \"x\\n\"", "3s input \"close\""});
  EXPECT_EQ(seen(run), reports({report("key", 1000)}, stillRunning));
}

TEST(watch_input_ending, comes_after_whatever_was_written_to_it) {
  const Result run = endlessWatch(
      {"1s input \"stop\\n\\n{}\"", "1s input \"\\xFF\"", "2s user key a", "3s close input"});
  EXPECT_EQ(seen(run), reports({report("key", 2000)}));
  EXPECT_EQ(run.elapsed, 3'000'000);
}

TEST(watch_input_ending, comes_at_once_when_there_is_no_input) {
  TestMac mac(watchedDesk, {"tap.create 1 before close input"}, Mode::direct);
  const Result run = watch(mac, {});
  EXPECT_EQ(seen(run), reports({}));
  EXPECT_EQ(run.elapsed, 0);
}

TEST(watch_input_ending, comes_when_nobody_reads) {
  const Result run = endlessWatch({"1s close output", "2s user key a", "3s user key b"});
  EXPECT_EQ(seen(run), reports({}, 1));
  EXPECT_EQ(run.elapsed, 2'000'000);
}

TEST(watch_input_ending, comes_when_nobody_reads_the_first_line) {
  TestMac mac(watchedDesk, {"tap.create 1 before close output"}, Mode::direct);
  EXPECT_EQ(seen(watch(mac, {})), "1 ");
}

TEST(watch_input_ending, is_orderly_without_a_reader_that_nothing_was_to_be_told) {
  EXPECT_EQ(seen(endlessWatch({"1s close output", "2s close input"})), reports({}));
}

TEST(watch_input_ending, waits_for_a_slow_reader) {
  const Result run = endlessWatch({"1s stall output", "2s user key a", "2125ms user key b",
                                   "4s resume output", "5s close input"});
  EXPECT_EQ(seen(run), reports({report("key", 2000), report("key", 4000)}));
}

TEST(watch_input_ending, does_not_wait_for_a_reader_that_reads_no_more) {
  const Result run = endlessWatch({"1s stall output", "2s user key a", "4s close input"});
  EXPECT_EQ(seen(run), reports({}));
  EXPECT_EQ(run.elapsed, 4'250'000);
}

TEST(watch_input_ending, lets_a_reader_finish_that_is_nearly_in_time) {
  const Result run =
      endlessWatch({"1s stall output", "2s user key a", "4s close input", "4249ms resume output"});
  EXPECT_EQ(seen(run), reports({report("key", 2000)}));
  EXPECT_EQ(run.elapsed, 4'249'000);
}

TEST(watch_input_ending, comes_by_a_signal) {
  for (const int number : {1, 2, 15}) {
    const Result run =
        endlessWatch({"1s user key a", "2s signal " + std::to_string(number), "3s user key b"});
    EXPECT_EQ(seen(run), reports({report("key", 1000)}, 128 + number));
  }
}

TEST(watch_input_ending, leaves_nothing_behind) {
  TestMac mac(watchedDeskWith({"1s user key a"}), {}, Mode::direct);
  const Result run = watch(mac, {});
  EXPECT_EQ(run.effects.find("post"), std::string::npos);
  EXPECT_TRUE(mac.desktop().mac().tapLine.taps.empty());
  EXPECT_EQ(mac.valueOf("Browser", "Page"), "a");
}

TEST(watch_input_tap, passes_everything_on) {
  TestMac mac(watchedDeskWith({"1s user key a", "1001ms user key b", "2s user key c tagged",
                               "3s user click 20,100", "4s user key d"}),
              {}, Mode::direct);
  watch(mac, {});
  EXPECT_EQ(mac.valueOf("Browser", "Page"), "abcd");
}

TEST(watch_input_tap, is_enabled_again_when_the_system_has_disabled_it) {
  for (const char* notice : {"disable taps", "disable taps timeout"}) {
    const std::vector<std::string> happenings = {"1s user key a", std::string("2s ") + notice,
                                                 "3s user key b"};
    EXPECT_EQ(watched(happenings), reports({report("key", 1000), report("key", 3000)})) << notice;
    EXPECT_EQ(timesEnabled(happenings), 2U);
  }
}

TEST(watch_input_tap, is_enabled_again_each_time) {
  const std::vector<std::string> happenings = {"1s disable taps",         "1s disable taps timeout",
                                               "1s disable taps timeout", "2s user key a",
                                               "3s disable taps",         "4s user key b"};
  EXPECT_EQ(watched(happenings), reports({report("key", 2000), report("key", 4000)}));
  EXPECT_EQ(timesEnabled({}), 1U);
}

TEST(watch_input_tap, is_enabled_again_before_the_next_event) {
  const Result run = endlessWatch({"1s disable taps", "1000001us user key a", "2s close input"});
  EXPECT_EQ(seen(run), reports({report("key", 1000)}));
}

TEST(watch_input_tap, is_not_reported_to_be_disabled) {
  EXPECT_EQ(watched({"1s disable taps", "2s disable taps timeout"}, {"Notes"}), reportsOnNotes({}));
}

}  // namespace
