#include <gtest/gtest.h>
#include <signal.h>

#include <array>

#include "simulator/text/parse.h"
#include "tests/support/every_command.h"

/// Somebody tells a run to end, by each signal that does so, at each call and at each millisecond
/// of it. The rules are checked in each run: that nothing more is begun, that what is pressed is
/// let go, that focus and clipboard come back, and in time.
namespace told_to_end_sweep_test {

using namespace testing_support;

constexpr std::array endingSignals = {SIGTERM, SIGINT, SIGHUP};
constexpr const char* told = "{\"error\":\"the run was told to end by a signal\",\"ok\":false}\n";

/// A run says that it was told to end and dies of it, or has said all that it had to say.
void checkEnding(const Result& run, int number, const Result& undisturbed) {
  if (run.output == undisturbed.output && run.status == undisturbed.status) return;
  EXPECT_EQ(run.status, 128 + number);
  EXPECT_TRUE(run.output == told || run.output == undisturbed.output) << run.output;
}

class told_to_end : public testing::TestWithParam<CommandRun> {};

TEST_P(told_to_end, at_any_call_breaks_no_rule) {
  TestMac recorded(deskOfEveryCommand(), {}, Mode::direct);
  const Result undisturbed = runOn(recorded, GetParam());
  const std::size_t calls = recorded.desktop().trace().size();
  std::size_t endings = 0;
  for (std::size_t call = 1; call <= calls; ++call) {
    for (const int number : endingSignals) {
      const std::string fault =
          "any " + std::to_string(call) + " before signal " + std::to_string(number);
      SCOPED_TRACE(fault);
      TestMac mac(deskOfEveryCommand(), {simulator::parseFault(fault, deskOfEveryCommand())},
                  Mode::direct);
      const Result ended = runOn(mac, GetParam());
      checkEnding(ended, number, undisturbed);
      if (ended.status == 128 + number) ++endings;
    }
    if (HasFailure()) return;  // one trace says enough
  }
  EXPECT_GE(endings, 3 * (calls - 3));  // all but those while the line is written
}

TEST_P(told_to_end, at_any_millisecond_breaks_no_rule) {
  TestMac recorded(deskOfEveryCommand(), {}, Mode::direct);
  const Result undisturbed = runOn(recorded, GetParam());
  for (simulator::Microseconds at = 0; at <= undisturbed.elapsed; at += 1'000) {
    SCOPED_TRACE(std::to_string(at) + " us");
    simulator::World scripted = deskOfEveryCommand();
    scripted.script.push_back({at + 1, simulator::parseHappening("signal 15", scripted)});
    TestMac mac(std::move(scripted), {}, Mode::direct);
    checkEnding(runOn(mac, GetParam()), SIGTERM, undisturbed);
    if (HasFailure()) return;
  }
}

/// The application hangs from the start: most waits are for it.
TEST_P(told_to_end, while_the_application_hangs_breaks_no_rule) {
  for (const simulator::Microseconds at : {1'000, 3'000'000, 7'000'000}) {
    simulator::World scripted = deskOfEveryCommand();
    for (auto& application : scripted.applications) application.hangs = true;
    scripted.script.push_back({at, simulator::parseHappening("signal 15", scripted)});
    TestMac recorded(deskOfEveryCommand(), {}, Mode::direct);
    for (auto& application : recorded.desktop().mac().world.applications) application.hangs = true;
    const Result undisturbed = runOn(recorded, GetParam());
    TestMac mac(std::move(scripted), {}, Mode::direct);
    const Result ended = runOn(mac, GetParam());
    checkEnding(ended, SIGTERM, undisturbed);
    EXPECT_TRUE(undisturbed.elapsed <= at || ended.elapsed <= at + 550'000) << ended.elapsed;
  }
}

/// The application stops answering while the run is under way, between keys that go down too.
TEST_P(told_to_end, while_the_application_hangs_from_any_call_on_breaks_no_rule) {
  TestMac recorded(deskOfEveryCommand(), {}, Mode::direct);
  const Result undisturbed = runOn(recorded, GetParam());
  const std::size_t calls = recorded.desktop().trace().size();
  for (std::size_t call = 1; call <= calls; ++call) {
    const std::string fault = "any " + std::to_string(call) +
                              " before hang pid:" + std::to_string(targetOf(GetParam()).pid);
    SCOPED_TRACE(fault);
    simulator::World scripted = deskOfEveryCommand();
    scripted.script.push_back({4'000'000, simulator::parseHappening("signal 15", scripted)});
    TestMac mac(std::move(scripted), {simulator::parseFault(fault, deskOfEveryCommand())},
                Mode::direct);
    const Result ended = runOn(mac, GetParam());
    EXPECT_LE(ended.elapsed, 4'550'000);
    if (HasFailure()) return;
  }
}

/// The first signal comes while the paste waits, the second while its clipboard is being put back.
TEST(told_to_end_twice, ends_at_once_and_writes_nothing) {
  simulator::World scripted = deskOfEveryCommand();
  for (const simulator::Microseconds at : {450'000, 460'000}) {
    scripted.script.push_back({at, simulator::parseHappening("signal 15", scripted)});
  }
  TestMac mac(std::move(scripted), {}, Mode::direct);
  EXPECT_EQ(seen(mac.driver("bg-paste-files Mail /a.txt")), "143 ");
}

INSTANTIATE_TEST_SUITE_P(commands, told_to_end, testing::ValuesIn(everyCommand()),
                         [](const auto& each) { return each.param.name; });

}  // namespace told_to_end_sweep_test
