#include <gtest/gtest.h>

#include <map>
#include <set>

#include "simulator/text/parse.h"
#include "tests/support/watching.h"

/// Every call of the watcher of the user's input, with every outcome it may have, once and from
/// there on, and with whatever may happen to its streams, its tap and itself. The rules are checked
/// in each run: what was written is whole lines. It ends as it should, or goes on.
namespace watcher_sweep_test {

using namespace testing_support;

const simulator::World& world() {
  static const simulator::World parsed = simulator::parseWorld(watchedDeskWith(
      {"1s user key return", "2s user scroll 0,1", "3s user click 500,400", "4s disable taps",
       "5s user key a for Notes", "6s user move 1,1", "7s user key shift return"},
      "8s"));
  return parsed;
}

constexpr int terminated = 128 + 15;

using Faults = std::vector<simulator::Fault>;

/// The faults of one call. What the watcher itself answers happens once: else it would have no end.
Faults faultsOf(platform::Function function, std::size_t occurrence) {
  Faults faults;
  for (const auto& outcome : simulator::admissibleOutcomes(function, world(), 41)) {
    for (const bool onwards : {false, true}) {
      faults.push_back({function, occurrence, onwards, outcome});
    }
  }
  for (const char* text :
       {"close input", "close output", "stall output", "disable taps", "disable taps timeout",
        "signal 15", "user key return", "user click 500,400", "input \"x\"", "user copy \"newer\"",
        "silence taps", "invalidate taps", "withdraw accessibility",
        "connect display 2 800x600 at 1440,0", "remove displays"}) {
    faults.push_back(
        {function,
         occurrence,
         false,
         {simulator::Outcome::Kind::happening, 0, simulator::parseHappening(text, world())}});
  }
  return faults;
}

TEST(watch_input_sweep, breaks_no_rule) {
  std::vector<platform::Function> calls;
  {
    TestMac mac(world(), {}, Mode::direct);
    EXPECT_EQ(watch(mac, {"Notes"}).status, 0);
    for (const auto& entry : mac.desktop().trace()) calls.push_back(entry.call.function);
  }
  std::map<platform::Function, std::size_t> occurrences;
  std::set<int> statuses;
  std::size_t runs = 0;
  for (const platform::Function function : calls) {
    for (const simulator::Fault& fault : faultsOf(function, ++occurrences[function])) {
      SCOPED_TRACE(simulator::faultText(fault));
      TestMac mac(world(), {fault}, Mode::direct);
      const Result run = watch(mac, {"Notes"});
      // Only what strikes the writing itself may come between a line and its line feed.
      if (function != platform::Function::writeOutput) {
        ASSERT_TRUE(run.output.empty() || run.output.back() == '\n') << run.output;
      }
      statuses.insert(run.status);
      // It listens to its input from when its first line has been taken.
      if (run.output.ends_with('\n')) {
        EXPECT_NE(run.status, stillRunning);
      }
      ++runs;
    }
    if (HasFailure()) return;
  }
  EXPECT_EQ(statuses, (std::set<int>{stillRunning, 0, 1, terminated}));
  EXPECT_GT(runs, 1500U);
}

}  // namespace watcher_sweep_test
