#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "simulator/faults.h"
#include "simulator/text/parse.h"
#include "tests/support/guarded.h"

// Every call of the guard, with every outcome it may have, once and from there on, and with
// whatever can happen just before it.

namespace guard_sweep_test {

using platform::Function;
using simulator::Fault;
using testing_support::deskWith;
using testing_support::Environment;
using testing_support::guard;
using testing_support::happeningsAt;
using testing_support::Mode;
using testing_support::Result;
using testing_support::stillRunning;
using testing_support::TestMac;

struct Made {
  Function function;
  std::size_t occurrence;
};

std::vector<Made> callsOfGuard(const std::string& world, const Environment& environment) {
  TestMac mac(world, {}, Mode::direct);
  guard(mac, environment);
  std::vector<Made> made;
  std::map<Function, std::size_t> counts;
  for (const auto& entry : mac.desktop().trace()) {
    made.push_back({entry.call.function, ++counts[entry.call.function]});
  }
  return made;
}

bool concernsTheLock(Function function) {
  return function == Function::lockScreen || function == Function::openLibrary ||
         function == Function::findSymbol;
}

/// What the guard asks once a second. Of a system that answers each of these a second late it may
/// be told of a tap that fails later than the rules want.
bool isAskedInRounds(Function function) {
  return function == Function::tapCanBeMade || function == Function::tapIsEnabled ||
         function == Function::axTrusted;
}

/// The faults of one call. What anybody does happens once.
std::vector<Fault> faultsOf(const Made& made, const simulator::World& world) {
  std::vector<Fault> faults;
  for (const auto& outcome : simulator::admissibleOutcomes(made.function, world, 41)) {
    const bool isOnce =
        outcome.kind == simulator::Outcome::Kind::happening ||
        (outcome.kind == simulator::Outcome::Kind::late && isAskedInRounds(made.function));
    for (const bool onwards : {false, true}) {
      if (isOnce && onwards) continue;
      faults.push_back({made.function, made.occurrence, onwards, outcome});
    }
  }
  for (const auto& outcome : happeningsAt(world)) {
    faults.push_back({made.function, made.occurrence, false, outcome});
  }
  return faults;
}

/// Whatever fails, a guard that has said that it watches locks; one that has not says why, ends
/// with status 1, or died of a signal.
void expectGood(const Result& run, const simulator::World& world, bool mayLock,
                const std::string& what) {
  const bool isLocked = world.session.locked.value_or(false);
  const bool isInGrace = run.output.find("\"by\":\"grace\"") != std::string::npos;
  if (run.status == stillRunning) {
    // Nobody can come back to a Mac that is locked, or somebody else's just now.
    EXPECT_TRUE(isLocked || !world.session.onConsole.value_or(true)) << what;
  } else if (run.status == 0) {
    EXPECT_TRUE(isLocked || isInGrace || !mayLock) << what;
  } else if (run.status == 1) {
    EXPECT_EQ(run.output,
              "{\"error\":\"cannot watch for the user's return: accessibility permission is "
              "missing\",\"ok\":false}\n")
        << what;
  } else {
    EXPECT_EQ(std::to_string(run.status) + run.output, "143") << what;
  }
}

void sweep(const std::vector<std::string>& happenings, const Environment& environment = {}) {
  const std::string text = deskWith(happenings);
  const simulator::World world = simulator::parseWorld(text);
  std::size_t runs = 0;
  for (const Made& made : callsOfGuard(text, environment)) {
    for (const Fault& fault : faultsOf(made, world)) {
      TestMac mac(world, {fault}, Mode::direct);
      const Result run = guard(mac, environment);
      const std::string what = simulator::faultText(fault) + ": " + run.output;
      expectGood(run, mac.world(), !concernsTheLock(made.function), what);
      ++runs;
    }
  }
  EXPECT_GT(runs, 1000U);
}

TEST(guard_sweep, of_a_guard_that_the_user_ends) {
  sweep({"1s input \"operating\\n\"", "3s user key a"});
}

TEST(guard_sweep, of_a_guard_that_a_signal_ends) { sweep({"1s disable taps", "3s signal 15"}); }

TEST(guard_sweep, of_a_guard_whose_grace_runs_out) {
  sweep({"500ms user key a", "1s user move 300,300", "3s user key b"},
        {{"ZENTROVE_COVER_GRACE", "2"}});
}

TEST(guard_sweep, of_a_guard_whose_screens_change) {
  sweep({"1s connect display 2 800x600 at 1440,0", "2s disconnect display 1", "3s close input"});
}

}  // namespace guard_sweep_test
