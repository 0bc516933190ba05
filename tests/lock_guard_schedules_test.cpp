#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/guarded.h"

// The guard has a main flow, which serves the tap, the signals and the clock, and one that reads
// standard input. Here each of them is put aside for the other at every call, and at every two.

namespace {

using testing_support::deskWith;
using testing_support::endedBy;
using testing_support::endedByGrace;
using testing_support::Environment;
using testing_support::guard;
using testing_support::guardStarts;
using testing_support::Mode;
using testing_support::Result;
using testing_support::Schedule;
using testing_support::seen;
using testing_support::TestMac;

/// The calls that are made once there are several flows.
std::size_t callsInTurn(const std::string& world, const Environment& environment) {
  TestMac mac(world, {}, Mode::direct);
  guard(mac, environment);
  const auto& trace = mac.desktop().trace();
  const auto start = std::find_if(trace.begin(), trace.end(), [](const auto& entry) {
    return entry.call.function == platform::Function::startFlow;
  });
  return static_cast<std::size_t>(trace.end() - start);
}

/// Runs the guard under every schedule with up to two pre-emptions. Every outcome, once.
std::set<std::string> outcomes(const std::vector<std::string>& happenings,
                               const Environment& environment = {}) {
  const std::string world = deskWith(happenings);
  // A pre-empted flow may make a few calls more than one that is not.
  const std::size_t calls = callsInTurn(world, environment) + 4;
  std::set<std::string> found;
  const auto tryOne = [&](const Schedule& schedule) {
    TestMac mac(world, {}, Mode::direct);
    const Result run = guard(mac, environment, schedule);
    EXPECT_TRUE(run.output.starts_with(guardStarts));
    const bool isLocked = mac.world().session.locked.value_or(false);
    found.insert((isLocked ? "locked " : "unlocked ") + std::to_string(run.status) + " " +
                 run.output.substr(guardStarts.size()));
  };
  tryOne({});
  for (std::size_t first = 0; first < calls; ++first) {
    for (std::size_t flow = 0; flow < 2; ++flow) {
      Schedule schedule;
      schedule.switches[first] = flow;
      tryOne(schedule);
      for (std::size_t second = first + 1; second < calls; ++second) {
        schedule.switches = {{first, flow}, {second, 1 - flow}};
        tryOne(schedule);
      }
    }
  }
  return found;
}

using Outcomes = std::set<std::string>;

std::string locked(const std::vector<std::string>& lines) {
  std::string text = "locked 0 ";
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

TEST(guard_schedules, end_of_input_and_a_key) {
  EXPECT_EQ(outcomes({"1s close input", "1s user key a"}),
            (Outcomes{locked({endedBy("user"), endedBy("run")})}));
  EXPECT_EQ(outcomes({"1s close input", "1000001us user key a"}),
            (Outcomes{locked({endedBy("run")})}));
}

TEST(guard_schedules, end_of_input_and_a_signal) {
  EXPECT_EQ(outcomes({"1s signal 15", "1s close input"}), (Outcomes{locked({endedBy("signal")})}));
  EXPECT_EQ(outcomes({"1s close input", "1000001us signal 15"}),
            (Outcomes{locked({endedBy("run")})}));
}

TEST(guard_schedules, a_line_a_key_a_signal_and_the_end_of_input) {
  const Outcomes found =
      outcomes({"1s input \"operating\\n\"", "1s user key a", "1s signal 15", "1s close input"});
  for (const std::string& outcome : found) EXPECT_TRUE(outcome.starts_with("locked 0 ")) << outcome;
}

TEST(guard_schedules, lines_and_a_disabled_tap) {
  EXPECT_EQ(outcomes({"1s input \"operating\\n\"", "1s disable taps", "1s input \"minding\\n\"",
                      "2s user key a"}),
            (Outcomes{locked({endedBy("user")})}));
}

TEST(guard_schedules, grace_and_the_end_of_input) {
  EXPECT_EQ(outcomes({"3s user key a", "3s close input"}, {{"ZENTROVE_COVER_GRACE", "5"}}),
            (Outcomes{"unlocked 0 " + std::string(endedByGrace) + "\n",
                      locked({endedByGrace, endedBy("run")})}));
}

TEST(guard_schedules, a_screen_that_comes_and_a_line) {
  const Outcomes found = outcomes(
      {"1s connect display 2 800x600 at 1440,0", "1s input \"operating\\n\"", "2s user key a"});
  EXPECT_EQ(found, (Outcomes{locked({endedBy("user")})}));
}

}  // namespace
