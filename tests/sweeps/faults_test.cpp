#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <vector>

#include "simulator/faults.h"
#include "tests/support/every_command.h"

/// Each function that a command calls fails once, in every way that is admissible. The rules are
/// checked in each run, and contract_suite holds each reply to its schema; nothing else is
/// asserted.
namespace faults_sweep_test {

using namespace testing_support;

/// The functions called without a fault.
std::set<platform::Function> functionsOf(const CommandRun& run) {
  TestMac mac(deskOfEveryCommand(), {}, Mode::direct);
  runOn(mac, run);
  std::set<platform::Function> functions;
  for (const auto& entry : mac.desktop().trace()) functions.insert(entry.call.function);
  return functions;
}

/// What may become of a function; of errors also one that the system documents for none of these.
std::vector<simulator::Outcome> outcomesOf(platform::Function function, const CommandRun& run) {
  constexpr std::int32_t parameterError = -50;
  auto outcomes = simulator::admissibleOutcomes(function, deskOfEveryCommand(), targetOf(run).pid);
  const auto error = std::find_if(outcomes.begin(), outcomes.end(), [](const auto& outcome) {
    return outcome.kind == simulator::Outcome::Kind::error;
  });
  if (error != outcomes.end()) {
    simulator::Outcome unknown = *error;
    unknown.code = parameterError;
    outcomes.push_back(unknown);
  }
  return outcomes;
}

class every_command_sweep : public testing::TestWithParam<CommandRun> {};

TEST_P(every_command_sweep, breaks_no_rule) {
  const auto functions = functionsOf(GetParam());
  std::size_t runs = 0;
  for (const platform::Function function : functions) {
    for (const auto& outcome : outcomesOf(function, GetParam())) {
      const simulator::Fault fault{function, 1, false, outcome};
      SCOPED_TRACE(simulator::faultText(fault));
      TestMac mac(deskOfEveryCommand(), {fault}, Mode::direct);
      runOn(mac, GetParam());
      ++runs;
      if (HasFailure()) return;  // one trace says enough
    }
  }
  EXPECT_GT(runs, functions.size());
}

INSTANTIATE_TEST_SUITE_P(commands, every_command_sweep, testing::ValuesIn(everyCommand()),
                         [](const auto& each) { return each.param.name; });

}  // namespace faults_sweep_test
