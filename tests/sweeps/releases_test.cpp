#include <gtest/gtest.h>

#include "simulator/faults.h"
#include "simulator/text/parse.h"
#include "simulator/text/releases.h"
#include "tests/support/every_command.h"
#include "tests/support/guarded.h"
#include "tests/support/service_desk.h"
#include "tests/support/watching.h"

/// Every command on a Mac of each release, and on one with each setting. The rules are checked in
/// each run; what is asserted beside them is said where it is.
namespace releases_sweep_test {

using namespace testing_support;
using simulator::World;

/// A read that does not come back is ended by whoever waits for the run.
void addEndsOfPatience(World& world) {
  for (const simulator::Microseconds time : {60'000'000, 120'000'000}) {
    world.script.push_back({time, simulator::parseHappening("signal 15", world)});
  }
}

/// The desk on each release, and on one without but with one setting.
std::vector<World> desks() {
  std::vector<World> worlds;
  for (const simulator::Release& release : simulator::releases) {
    simulator::applyRelease(worlds.emplace_back(deskOfEveryCommand()).system, release.number);
  }
  for (const simulator::ReleaseSetting& setting : simulator::releaseSettings()) {
    setting.apply(worlds.emplace_back(deskOfEveryCommand()).system);
  }
  for (World& world : worlds) addEndsOfPatience(world);
  return worlds;
}

class releases_sweep : public testing::TestWithParam<CommandRun> {};

TEST_P(releases_sweep, breaks_no_rule) {
  for (const World& world : desks()) {
    TestMac mac(world, {}, Mode::direct);
    for (int run = 0; run < 2; ++run) EXPECT_NE(runOn(mac, GetParam()).status, stillRunning);
  }
}

/// The user answers the question just before one call after the other, whether it has come up or
/// not.
TEST_P(releases_sweep, breaks_no_rule_when_the_user_answers) {
  World world = deskOfEveryCommand();
  simulator::applyRelease(world.system, 15);
  TestMac recorded(world, {}, Mode::direct);
  runOn(recorded, GetParam());
  const std::size_t calls = recorded.desktop().trace().size();
  for (std::size_t call = 1; call <= calls; ++call) {
    const std::string text = "any " + std::to_string(call) + " before user click 200,206";
    SCOPED_TRACE(text);
    TestMac mac(world, {simulator::parseFault(text, world)}, Mode::direct);
    runOn(mac, GetParam());
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(commands, releases_sweep, testing::ValuesIn(everyCommand()),
                         [](const auto& each) { return each.param.name; });

std::vector<std::string> settings() {
  std::vector<std::string> lines;
  for (const simulator::Release& release : simulator::releases) {
    lines.push_back("macos " + std::to_string(release.number));
  }
  for (const simulator::ReleaseSetting& setting : simulator::releaseSettings()) {
    lines.push_back("system " + std::string(setting.phrase));
  }
  return lines;
}

TEST(releases_of_guard, break_no_rule) {
  for (const std::string& line : settings()) {
    SCOPED_TRACE(line);
    TestMac mac(deskWith({"1s user key a"}) + line + "\n");
    const Result run = guard(mac);
    EXPECT_EQ(run.status, line == "system key-taps refused" ? 1 : 0);
  }
}

TEST(releases_of_watcher, break_no_rule) {
  for (const std::string& line : settings()) {
    SCOPED_TRACE(line);
    TestMac mac(watchedDeskWith({"1s user key a"}) + line + "\n");
    EXPECT_EQ(watch(mac, {}).status, 0);
  }
}

/// The window of the first session closes, or its application quits, just before one call after the
/// other.
TEST(releases_of_service, break_no_rule_when_a_shared_window_closes) {
  for (const char* setting : {"goes-on", "inactive", "stopped"}) {
    const std::string world =
        std::string(serviceDesk) + "    system closed-window " + setting + "\n";
    TestMac recorded(world);
    serve(recorded, wholeSession());
    const std::size_t calls = recorded.desktop().trace().size();
    int told = 0;
    for (std::size_t call = 1; call <= calls; ++call) {
      for (const char* happening : {"in Notes close window", "quit Notes"}) {
        const std::string fault = "any " + std::to_string(call) + " before " + happening;
        SCOPED_TRACE(fault);
        TestMac mac(world, {fault});
        const Result run = serve(mac, wholeSession());
        if (run.output.find("sharing stopped") != std::string::npos) ++told;
        if (testing::Test::HasFailure()) return;
      }
    }
    EXPECT_EQ(told > 0, setting == std::string("stopped"));
  }
}

}  // namespace releases_sweep_test
