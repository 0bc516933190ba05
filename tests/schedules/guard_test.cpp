#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>

#include "simulator/faults.h"
#include "simulator/text/parse.h"
#include "tests/support/guarded.h"

// The guard has a main flow, which serves the tap, the signals and the clock, one that stands by to
// lock, one that sees to it that the main flow comes back from its rounds, and one that reads
// standard input. Here each of them is put aside for another at every call, and the main one and
// the reader at every two; and whatever can happen to the guard happens just before every call, and
// before every two.

namespace guard_schedule_test {

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

/// The flows, in the order in which they are started.
constexpr std::size_t mainFlow = 0;
constexpr std::size_t supervisor = 1;
constexpr std::size_t locker = 2;
constexpr std::size_t reader = 3;

/// The calls that are made before and since there are several flows.
struct Calls {
  std::size_t alone = 0;
  std::size_t inTurn = 0;
};

Calls callsOf(const simulator::World& world, const Environment& environment) {
  TestMac mac(world, {}, Mode::direct);
  guard(mac, environment);
  const auto& trace = mac.desktop().trace();
  const auto start = std::find_if(trace.begin(), trace.end(), [](const auto& entry) {
    return entry.call.function == platform::Function::startFlow;
  });
  return {static_cast<std::size_t>(start - trace.begin()),
          static_cast<std::size_t>(trace.end() - start)};
}

/// What comes between at a call: the other flow, or something that happens to the guard.
struct Disturbance {
  std::size_t call = 0;  // from 0, since there are several flows
  std::size_t flow = 0;  // that goes on, when nothing happens
  std::optional<simulator::Outcome> happening = std::nullopt;
};

/// How a guard ended, in one line: whether the screen is locked, the status, what it said.
std::string outcomeOf(const simulator::World& world, const Environment& environment,
                      std::size_t alone, const std::vector<Disturbance>& disturbances) {
  Schedule schedule;
  std::vector<simulator::Fault> faults;
  for (const Disturbance& each : disturbances) {
    if (each.happening) {
      faults.push_back({std::nullopt, alone + each.call + 1, false, *each.happening});
    } else {
      schedule.switches[each.call] = each.flow;
    }
  }
  TestMac mac(world, faults, Mode::direct);
  const Result run = guard(mac, environment, schedule);
  const bool hasStarted = run.output.starts_with(guardStarts);
  const bool isLocked = mac.world().session.locked.value_or(false);
  return (isLocked ? "locked " : "unlocked ") + std::to_string(run.status) + " " +
         run.output.substr(hasStarted ? guardStarts.size() : 0);
}

/// Runs the guard with every set of up to two disturbances: of pre-emptions by the other flow and,
/// at any call, of these happenings. Every outcome, once.
std::set<std::string> outcomes(const std::vector<std::string>& script,
                               const Environment& environment = {},
                               const std::vector<const char*>& happenings = {}) {
  const simulator::World world = simulator::parseWorld(deskWith(script));
  const Calls calls = callsOf(world, environment);
  std::vector<Disturbance> all;
  // A pre-empted flow may make a few calls more than one that is not.
  for (std::size_t call = 0; call < calls.inTurn + 4; ++call) {
    for (const std::size_t flow : {mainFlow, reader}) all.push_back({call, flow});
    for (const char* happening : happenings) {
      all.push_back({call, 0,
                     simulator::Outcome{simulator::Outcome::Kind::happening, 0,
                                        simulator::parseHappening(happening, world)}});
    }
  }
  std::set<std::string> found = {outcomeOf(world, environment, calls.alone, {})};
  for (std::size_t call = 0; call < calls.inTurn + 4; ++call) {
    for (const std::size_t flow : {locker, supervisor}) {
      found.insert(outcomeOf(world, environment, calls.alone, {{call, flow}}));
    }
  }
  for (std::size_t i = 0; i < all.size(); ++i) {
    found.insert(outcomeOf(world, environment, calls.alone, {all[i]}));
    for (std::size_t j = i + 1; j < all.size(); ++j) {
      found.insert(outcomeOf(world, environment, calls.alone, {all[i], all[j]}));
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

const std::vector<const char*> events = {"signal 15", "user key a", "close input",
                                         "request termination", "disable taps"};

/// A guard whose tap is disabled before the system has said that it works.
const std::string unwatched =
    "unlocked 1 {\"error\":\"cannot watch for the user's return: accessibility permission is "
    "missing\",\"ok\":false}\n";

// A tap that is disabled twice is enabled at each notice: no guard ends by itself once it watches.
TEST(guard_schedules, anything_at_any_instant) {
  EXPECT_EQ(
      outcomes({"1s input \"operating\\n\"", "2s user key b"}, {}, events),
      (Outcomes{locked({endedBy("user")}), locked({endedBy("signal")}), locked({endedBy("run")}),
                locked({endedBy("quit")}), locked({endedBy("user"), endedBy("signal")}),
                locked({endedBy("user"), endedBy("run")}),
                locked({endedBy("user"), endedBy("quit")}), unwatched}));
}

TEST(guard_schedules, anything_at_any_instant_of_grace) {
  EXPECT_EQ(
      outcomes({"1100ms input \"operating\\n\"", "1200ms user key b"},
               {{"ZENTROVE_COVER_GRACE", "1.5"}}, events),
      (Outcomes{"unlocked 0 " + std::string(endedByGrace) + "\n", locked({endedBy("signal")}),
                locked({endedBy("run")}), locked({endedBy("quit")}),
                locked({endedByGrace, endedBy("signal")}), locked({endedByGrace, endedBy("run")}),
                locked({endedByGrace, endedBy("quit")}), unwatched}));
}

// All orders in which four things can come at the same instant.
TEST(guard_schedules, everything_at_once_in_every_order) {
  std::vector<std::string> script = {"1s close input", "1s input \"operating\\n\"", "1s signal 15",
                                     "1s user key a"};
  Outcomes found;
  do {
    found.merge(outcomes(script));
  } while (std::next_permutation(script.begin(), script.end()));
  EXPECT_EQ(found,
            (Outcomes{locked({endedBy("signal")}), locked({endedBy("user"), endedBy("signal")})}));
}

}  // namespace guard_schedule_test
