#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "simulator/world/world.h"
#include "tests/support/simulated_run.h"

/// Runs of every command that does not live on, for tests of what may come between any two calls.
namespace testing_support {

struct CommandRun {
  std::string name;
  std::vector<std::string> arguments;
};

/// The name in a test's name.
std::ostream& operator<<(std::ostream& out, const CommandRun& run);

/// At least one of each command, and those that do all that they can.
std::vector<CommandRun> everyCommand();

/// Where they run. Each application has a second window, in which the user may be: Private.
const simulator::World& deskOfEveryCommand();

/// The application that a run is about; Notes for those that are about none.
const simulator::Application& targetOf(const CommandRun& run);

/// Runs it beside the capture service.
Result runOn(TestMac& mac, const CommandRun& run);

}  // namespace testing_support
