#include <gtest/gtest.h>

#include <set>
#include <string_view>

#include "main/dispatcher.h"
#include "simulator/text/parse.h"
#include "tests/support/every_command.h"

/// Whatever the user and the system may do comes just before any call of any command that does not
/// live on. The rules are checked in each run; nothing else is asserted.
namespace happenings_sweep_test {

using namespace testing_support;

/// The user clicks in the middle of each window of the application, front to back.
std::vector<std::string> clicksInto(const simulator::Application& application) {
  std::vector<std::string> clicks;
  for (const simulator::Window& window : deskOfEveryCommand().windows) {
    if (window.owner != application.pid) continue;
    const auto& frame = window.frame;
    clicks.push_back("user click " + std::to_string(static_cast<int>(frame.x + frame.width / 2)) +
                     "," + std::to_string(static_cast<int>(frame.y + frame.height / 2)));
  }
  return clicks;
}

/// Each is what happens before one call, and then before those that follow it.
using Happenings = std::vector<std::string>;

std::vector<Happenings> happeningsAround(const simulator::Application& target) {
  const std::string there = clicksInto(target).front();
  const std::string elsewhere = clicksInto(target).back();
  const std::string name = "pid:" + std::to_string(target.pid);
  return {
      {elsewhere},
      {elsewhere, "user key q"},
      {elsewhere, "user key q", "front Browser"},
      {there},
      {there, "user key q"},
      {"user key q"},
      {"user copy newer"},
      {"front " + name},
      {"front " + name, "front Browser"},
      {"front Mail"},
      {"front Mail", "front Browser"},
      {"quit " + name},
      {"hang " + name},
      {"hang " + name, "recover " + name},
      {"in " + name + " open sheet \"Sure?\""},
      {"in " + name + " close window"},
      {"lock"},
      {"lock", "unlock"},
      {"leave console"},
      {"leave console", "return to console"},
      {"end process 900"},
      {"withdraw accessibility"},
      {"withdraw recording"},
      {"connect display 2 800x600 at 1440,0"},
      {"replug display 1"},
      {"remove displays"},
  };
}

class happenings_sweep : public testing::TestWithParam<CommandRun> {};

TEST_P(happenings_sweep, breaks_no_rule) {
  TestMac recorded(deskOfEveryCommand(), {}, Mode::direct);
  runOn(recorded, GetParam());
  const std::size_t calls = recorded.desktop().trace().size();
  for (const Happenings& happenings : happeningsAround(targetOf(GetParam()))) {
    for (std::size_t call = 1; call <= calls; ++call) {
      std::vector<simulator::Fault> faults;
      for (const std::string& happening : happenings) {
        const std::string text =
            "any " + std::to_string(call + faults.size()) + " before " + happening;
        faults.push_back(simulator::parseFault(text, deskOfEveryCommand()));
      }
      SCOPED_TRACE(simulator::faultText(faults.front()) + " and " +
                   std::to_string(faults.size() - 1) + " more");
      TestMac mac(deskOfEveryCommand(), faults, Mode::direct);
      runOn(mac, GetParam());
      if (HasFailure()) return;  // one trace says enough
    }
  }
}

TEST(every_command, is_one_that_does_not_live_on) {
  // Those that live on have sweeps of their own: service_test.cpp, guard_test.cpp,
  // watcher_test.cpp and lock_commands_test.cpp.
  std::set<std::string_view> all = {"capture-service", "lock-guard", "watch-input", "keep-awake"};
  const std::vector<CommandRun> runs = everyCommand();
  for (const CommandRun& run : runs) all.insert(run.arguments.front());
  std::set<std::string_view> inTable;
  for (const driver::Command& command : driver::commands()) inTable.insert(command.form.name);
  EXPECT_EQ(all, inTable);
}

INSTANTIATE_TEST_SUITE_P(commands, happenings_sweep, testing::ValuesIn(everyCommand()),
                         [](const auto& each) { return each.param.name; });

}  // namespace happenings_sweep_test
