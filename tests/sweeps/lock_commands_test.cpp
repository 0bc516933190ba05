#include <gtest/gtest.h>

#include <map>
#include <set>

#include "simulator/faults.h"
#include "simulator/text/parse.h"
#include "tests/support/guarded.h"

// Every call of "keep-awake" and "lock-now", with every outcome it may have, once and from there
// on, and with whatever can happen just before it. The rules are checked in each run.

namespace lock_commands_sweep_test {

using platform::Function;
using simulator::Fault;
using testing_support::guardedDesk;
using testing_support::happeningsAt;
using testing_support::Mode;
using testing_support::Result;
using testing_support::TestMac;

/// What a command comes to under every fault, as its status and its output, each once.
std::set<std::string> outcomesOf(const char* command) {
  const simulator::World world = simulator::parseWorld(guardedDesk);
  TestMac plain(world, {}, Mode::direct);
  plain.driver(command);
  std::map<Function, std::size_t> counts;
  std::set<std::string> found;
  for (const auto& entry : plain.desktop().trace()) {
    const Function function = entry.call.function;
    const std::size_t occurrence = ++counts[function];
    std::vector<Fault> faults;
    for (const auto& outcome : simulator::admissibleOutcomes(function, world, 41)) {
      for (const bool onwards : {false, true}) {
        faults.push_back({function, occurrence, onwards, outcome});
      }
    }
    for (const auto& outcome : happeningsAt(world)) {
      faults.push_back({function, occurrence, false, outcome});
    }
    for (const Fault& fault : faults) {
      TestMac mac(world, {fault}, Mode::direct);
      const Result run = mac.driver(command);
      found.insert(std::to_string(run.status) + " " + run.output);
    }
  }
  return found;
}

using Outcomes = std::set<std::string>;

// Without a reader nothing is read, or a line without its line feed.
TEST(keep_awake_sweep, holds_or_is_ended) {
  const std::string held = "{\"keepAwake\":true,\"ok\":true}";
  EXPECT_EQ(outcomesOf("keep-awake"), (Outcomes{"-1 " + held + "\n", "-1 " + held, "-1 ",
                                                "143 " + held + "\n", "143 " + held, "143 "}));
}

TEST(lock_now_sweep, locks_or_says_that_it_could_not) {
  const std::string locked = "{\"ok\":true}";
  const std::string toldToEnd = "{\"error\":\"the run was told to end by a signal\",\"ok\":false}";
  EXPECT_EQ(outcomesOf("lock-now"),
            (Outcomes{"0 " + locked + "\n", "0 {\"ok\":false}\n", "0 " + locked, "0 ",
                      "143 " + toldToEnd + "\n", "-1 " + locked, "-1 "}));
}

}  // namespace lock_commands_sweep_test
