#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "capture/commands.h"
#include "main/dispatcher.h"
#include "simulator/text/parse.h"
#include "tests/support/simulated_run.h"

/// Every call of the commands that press keys, type and paste, with every outcome it may have, once
/// and from there on. The rules are checked in each run; nothing else is asserted.
namespace keyboard_sweep_test {

using namespace testing_support;

/// Each application has a second window, in which the user may be: Private, 100 points apart.
constexpr const char* desk = R"(
    process 900
    pasteboard item "public.utf8-plain-text" "old" "public.rtf" "{old}" promises "com.example.lazy"
    pasteboard item "public.png" "picture"
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 300x200
            AXTextField "Address" at 10,60 size 80x20 focused
        window 6 "Private" at 600,100 size 90x90
            AXTextArea "Own" at 610,110 size 60x60
    app Notes pid 41 bundle com.example.notes
        menu File > Save cmd s press: append "saved" to Body
        menu Edit > Undo cmd z disabled
        window 7 "Inbox" at 50,40 size 200x150
            AXTextArea "Body" at 60,80 size 150x80 value "hello"
        window 8 "Inbox" at 50,40 size 200x150 off-screen
        window 10 "Private" at 600,200 size 90x90
            AXTextArea "Own" at 610,210 size 60x60
    app Chat pid 42 bundle com.example.chat chromium
        window 9 "Chat" at -200,20 size 150x150
            AXTextArea "Message" at -190,30 size 40x20 focused takes files submit: set Message ""
        window 11 "Private" at 600,300 size 90x90
            AXTextArea "Own" at 610,310 size 60x60
    app Docs pid 43 bundle com.example.docs pastes after 350ms
        window 12 "Letter" at 70,100 size 160x130
            AXTextArea "Text" at 70,100 size 60x30
        window 13 "Private" at 600,400 size 90x90
            AXTextArea "Own" at 610,410 size 60x60
    app Mail pid 44 bundle com.example.mail
        window 14 "Letter" at 20,20 size 150x150 unnumbered
        window 15 at 30,40 size 90x60 sheet of 14
            AXTextField "To" at 40,50 size 40x10
            AXTextField "Copy" at 40,70 size 40x10
        window 16 "Private" at 600,500 size 90x90
            AXTextArea "Own" at 610,510 size 60x60
    panel pid 50 window 60 over 12
)";

struct Scenario {
  std::string name;
  std::vector<std::string> arguments;
  Environment environment;
  platform::Pid target;
};

/// The name in a test's name.
std::ostream& operator<<(std::ostream& out, const Scenario& scenario) {
  return out << scenario.name;
}

std::vector<Scenario> scenarios() {
  const Environment service = {{"CU_CAPTURE_PID", "900"}};
  const Environment scoped = {{"CU_CAPTURE_PID", "900"}, {"CU_WINDOW", "inbox"}};
  const Environment held = {{"CU_CAPTURE_PID", "900"}, {"CU_FOCUS_PID", "41"}};
  return {
      {"key", {"bg-key", "Notes", "ctrl+shift+a"}, service, 41},
      {"shortcut", {"bg-key", "Notes", "cmd+s"}, service, 41},
      {"shortcut_without_menu", {"bg-key", "Notes", "cmd+z"}, scoped, 41},
      {"key_in_front", {"bg-key", "Browser", "a"}, service, 40},
      {"key_held", {"bg-key", "Notes", "a"}, held, 41},
      {"chord", {"bg-key", "Notes", "cmd+shift+alt+ctrl+x"}, service, 41},
      {"no_combination", {"bg-key", "Notes", "cmd+f13"}, service, 41},
      {"key_in_sheet", {"bg-key", "Mail", "tab"}, service, 44},
      {"text_held", {"bg-type", "Notes", "one\ntwo"}, held, 41},
      {"text_in_front", {"bg-type", "Browser", "one"}, service, 40},
      {"text", {"bg-type", "Notes", "one, two and three\nfour"}, service, 41},
      {"text_in_chromium", {"bg-type", "Chat", "a\n"}, service, 42},
      {"text_in_panel", {"bg-type", "Docs", "name"}, service, 43},
      {"paste", {"bg-paste-files", "Notes", "/a.txt", "b.txt"}, service, 41},
      {"paste_in_chromium", {"bg-paste-files", "Chat", "/a.txt"}, service, 42},
  };
}

const simulator::World& world() {
  static const simulator::World parsed = simulator::parseWorld(desk);
  return parsed;
}

/// The functions called without a fault, in order.
std::vector<platform::Function> recordedCalls(const Scenario& scenario) {
  TestMac mac(world(), {}, Mode::direct);
  EXPECT_EQ(mac.driverWith(scenario.arguments, scenario.environment).status, 0);
  std::vector<platform::Function> calls;
  for (const auto& entry : mac.desktop().trace()) calls.push_back(entry.call.function);
  return calls;
}

class keyboard_sweep : public testing::TestWithParam<Scenario> {};

TEST_P(keyboard_sweep, breaks_no_rule) {
  const Scenario& scenario = GetParam();
  std::map<platform::Function, std::size_t> occurrences;
  std::size_t runs = 0;
  for (const platform::Function function : recordedCalls(scenario)) {
    const std::size_t occurrence = ++occurrences[function];
    for (const auto& outcome : simulator::admissibleOutcomes(function, world(), scenario.target)) {
      for (const bool onwards : {false, true}) {
        const simulator::Fault fault{function, occurrence, onwards, outcome};
        SCOPED_TRACE(scenario.name + ", fault: " + simulator::faultText(fault));
        TestMac mac(world(), {fault}, Mode::direct);
        mac.driverWith(scenario.arguments, scenario.environment);
        ++runs;
      }
    }
    if (HasFailure()) return;
  }
  EXPECT_GT(runs, 500U);
}

/// How long a run took beside its own waits.
simulator::Microseconds lostTime(const TestMac& mac) {
  simulator::Microseconds lost = mac.desktop().mac().now;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function != platform::Function::sleep) continue;
    lost -= driver::unpack<std::uint32_t>(entry.call.arguments[0]);
  }
  return lost;
}

TEST_P(keyboard_sweep, loses_two_time_outs_at_most_to_a_hang_at_any_call) {
  const Scenario& scenario = GetParam();
  constexpr simulator::Microseconds timeOut = 6'000'000;
  const std::size_t calls = recordedCalls(scenario).size();
  for (std::size_t call = 1; call <= calls; ++call) {
    const std::string fault =
        "any " + std::to_string(call) + " before hang pid:" + std::to_string(scenario.target);
    SCOPED_TRACE(fault);
    TestMac mac(world(), {simulator::parseFault(fault, world())}, Mode::direct);

    mac.driverWith(scenario.arguments, scenario.environment);

    const simulator::Microseconds lost = lostTime(mac);
    EXPECT_TRUE(lost == 0 || lost == timeOut || lost == 2 * timeOut) << lost;
  }
}

/// One of the faults of a run, whichever the random number says.
simulator::Fault anyFault(const Scenario& scenario, const std::vector<platform::Function>& calls,
                          std::mt19937& random) {
  while (true) {
    const std::size_t index = random() % calls.size();
    const auto outcomes = simulator::admissibleOutcomes(calls[index], world(), scenario.target);
    if (outcomes.empty()) continue;
    const auto occurrence =
        std::count(calls.begin(), calls.begin() + static_cast<long>(index) + 1, calls[index]);
    return {calls[index], static_cast<std::size_t>(occurrence), random() % 2 == 0,
            outcomes[random() % outcomes.size()]};
  }
}

TEST_P(keyboard_sweep, breaks_no_rule_when_two_things_go_wrong) {
  const Scenario& scenario = GetParam();
  const auto calls = recordedCalls(scenario);
  std::mt19937 random(1);
  for (int run = 0; run < 500; ++run) {
    const auto first = anyFault(scenario, calls, random);
    const auto second = anyFault(scenario, calls, random);
    SCOPED_TRACE(simulator::faultText(first) + " and " + simulator::faultText(second));
    TestMac mac(world(), {first, second}, Mode::direct);
    mac.driverWith(scenario.arguments, scenario.environment);
    if (HasFailure()) return;
  }
}

/// The user goes to another window of the target.
std::string clickElsewhere(const Scenario& scenario) {
  return "user click 640," + std::to_string(140 + 100 * (scenario.target - 40));
}

simulator::Fault faultBefore(std::size_t call, const std::string& happening) {
  return simulator::parseFault("any " + std::to_string(call) + " before " + happening, world());
}

TEST_P(keyboard_sweep, breaks_no_rule_when_the_user_goes_to_another_window_of_the_target) {
  const Scenario& scenario = GetParam();
  const std::size_t calls = recordedCalls(scenario).size();
  for (std::size_t call = 1; call <= calls; ++call) {
    const simulator::Fault click = faultBefore(call, clickElsewhere(scenario));
    SCOPED_TRACE(simulator::faultText(click));
    TestMac mac(world(), {click}, Mode::direct);

    mac.driverWith(scenario.arguments, scenario.environment);

    EXPECT_EQ(mac.world().frontmost, scenario.target);
    if (HasFailure()) return;
  }
}

TEST_P(keyboard_sweep, breaks_no_rule_when_the_user_types_in_another_window_of_the_target) {
  const Scenario& scenario = GetParam();
  const std::size_t calls = recordedCalls(scenario).size();
  for (std::size_t call = 1; call < calls; ++call) {
    const simulator::Fault click = faultBefore(call, clickElsewhere(scenario));
    const simulator::Fault key = faultBefore(call + 1, "user key q");
    SCOPED_TRACE(simulator::faultText(click));
    TestMac mac(world(), {click, key}, Mode::direct);
    mac.driverWith(scenario.arguments, scenario.environment);
    if (HasFailure()) return;
  }
}

TEST(keyboard_sweep_scenarios, have_every_command_in_the_background_but_the_capture_group) {
  std::set<std::string_view> swept;
  const std::vector<Scenario> all = scenarios();
  for (const Scenario& scenario : all) swept.insert(scenario.arguments.front());
  for (const driver::CaptureCommand& command : driver::captureCommands) {
    swept.insert(command.form.name);  // by tests/sweeps/pointer_test.cpp
  }
  for (const driver::Command& command : driver::commands()) {
    if (command.actsOnInput != driver::ActsOnInput::inBackground) continue;
    EXPECT_TRUE(swept.contains(command.form.name)) << command.form.name;
  }
}

INSTANTIATE_TEST_SUITE_P(commands, keyboard_sweep, testing::ValuesIn(scenarios()),
                         [](const auto& parameter) { return parameter.param.name; });

}  // namespace keyboard_sweep_test
