#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "capture/commands.h"
#include "simulator/text/parse.h"
#include "tests/support/simulated_run.h"

/// Every call of every command, with every outcome it may have, once and from there on. The rules
/// are checked in each run; nothing else is asserted.
namespace pointer_sweep_test {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 400x300 scale 1
    display 2 300x200 at -300,0 scale 2
    process 900
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 300x200
            AXLink "News" at 10,60 size 80x20 press: retitle "News"
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 50,40 size 200x150
            AXButton "Send" at 60,50 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 60,80 size 150x80 value "hello" focused
        window 8 at 60,60 size 100x60
    app Chat pid 42 bundle com.example.chat chromium
        window 9 "Chat" at -200,20 size 150x150
            AXButton "Ok" at -190,30 size 40x20 press: toggle
    app Input pid 43 bundle com.example.input accessory
        window 12 at 70,100 size 60x30 layer 3
)";

struct Scenario {
  std::string name;
  std::string commandLine;
  Environment environment;
  platform::Pid target;
};

/// The name in a test's name.
std::ostream& operator<<(std::ostream& out, const Scenario& scenario) {
  return out << scenario.name;
}

/// A folder of this process alone, for the pictures.
const std::filesystem::path& outputFolder() {
  static const std::filesystem::path folder = [] {
    auto path =
        std::filesystem::temp_directory_path() / ("driver-sweep-" + std::to_string(getpid()));
    std::filesystem::create_directory(path);
    return path;
  }();
  return folder;
}

std::string outputPath() { return (outputFolder() / "out.png").string(); }

std::string contentsOfFile() {
  std::ifstream file(outputPath());
  return {std::istreambuf_iterator<char>(file), {}};
}

// A file that is cut short and written anew is waited for by some file systems, thousands of times.
void writeOldFile() {
  if (contentsOfFile() == "old") return;
  std::filesystem::remove(outputPath());
  std::ofstream(outputPath()) << "old";
}

/// A failed run leaves the old file as it was, and none leaves anything beside it.
void checkFiles(const Result& result) {
  const bool succeeded = result.output.find("\"ok\":true") != std::string::npos;
  if (!succeeded) {
    EXPECT_EQ(contentsOfFile(), "old");
  }
  const auto entries = std::filesystem::directory_iterator(outputFolder());
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

std::vector<Scenario> scenarios() {
  const Environment service = {{"CU_CAPTURE_PID", "900"}};
  const Environment scoped = {{"CU_CAPTURE_PID", "900"}, {"CU_WINDOW", "inbox"}};
  const Environment held = {{"CU_CAPTURE_PID", "900"}, {"CU_FOCUS_PID", "41"}};
  return {
      {"permissions", "permissions", service, 0},
      {"scene", "scene", service, 0},
      {"session", "session", service, 0},
      {"windows", "windows Notes", scoped, 41},
      {"focus_release", "focus-release 41 7", service, 41},
      {"unknown_command", "bg-nothing Browser", scoped, 40},
      {"input_command", "ax-press Browser", scoped, 40},
      {"click", "bg-click Notes 70 55", service, 41},
      {"click_in_scope", "bg-click pid:41 70 55", scoped, 41},
      {"click_held", "bg-click Notes 70 55", held, 41},
      {"click_in_front", "bg-click Browser 20 70", service, 40},
      {"double_click", "bg-click com.example.notes 70 55 left 2", service, 41},
      {"right_click", "bg-click Notes 70 55 right", service, 41},
      {"chromium_click", "bg-click Chat -180 35", service, 42},
      {"chromium_right_click", "bg-click Chat -180 35 right", service, 42},
      {"scroll", "bg-scroll Notes 70 90 0 -3", service, 41},
      {"chromium_scroll", "bg-scroll Chat -180 35 2 -3", service, 42},
      {"move", "bg-move Notes 70 90", service, 41},
      {"chromium_move", "bg-move Chat -180 35", service, 42},
      {"drag", "bg-drag Notes 70 90 80 90", service, 41},
      {"capture", "capture Notes " + outputPath(), service, 41},
      {"capture_in_scope", "capture Notes " + outputPath(), scoped, 41},
      {"probe", "capture-probe x", service, 0},
      {"focus_hold", "bg-focus-hold Notes", service, 41},
  };
}

const simulator::World& world() {
  static const simulator::World parsed = simulator::parseWorld(desk);
  return parsed;
}

/// The functions called without a fault, in order.
std::vector<platform::Function> recordedCalls(const Scenario& scenario) {
  TestMac mac(world(), {}, Mode::direct);
  mac.driver(scenario.commandLine, scenario.environment);
  std::vector<platform::Function> calls;
  for (const auto& entry : mac.desktop().trace()) calls.push_back(entry.call.function);
  return calls;
}

void runWith(const Scenario& scenario, const simulator::Fault& fault) {
  SCOPED_TRACE("driver " + scenario.commandLine + ", fault: " + simulator::faultText(fault));
  TestMac mac(world(), {fault}, Mode::direct);
  writeOldFile();
  const Result result = mac.driver(scenario.commandLine, scenario.environment);
  if (!result.output.empty()) checkFiles(result);
}

class fault_sweep : public testing::TestWithParam<Scenario> {};

TEST_P(fault_sweep, breaks_no_rule) {
  const Scenario& scenario = GetParam();
  const auto calls = recordedCalls(scenario);
  std::map<platform::Function, std::size_t> occurrences;
  std::size_t runs = 0;
  for (const platform::Function function : calls) {
    const std::size_t occurrence = ++occurrences[function];
    for (const auto& outcome : simulator::admissibleOutcomes(function, world(), scenario.target)) {
      for (const bool onwards : {false, true}) {
        runWith(scenario, {function, occurrence, onwards, outcome});
        ++runs;
        if (HasFailure()) return;  // one trace says enough
      }
    }
  }
  RecordProperty("runs", static_cast<int>(runs));
  EXPECT_GT(runs, calls.size());
}

TEST(fault_sweep_scenarios, have_every_command_of_the_capture_group) {
  std::set<std::string> swept;
  for (const Scenario& scenario : scenarios()) {
    swept.insert(scenario.commandLine.substr(0, scenario.commandLine.find(' ')));
  }
  for (const driver::CaptureCommand& command : driver::captureCommands) {
    EXPECT_TRUE(swept.contains(std::string(command.form.name))) << command.form.name;
  }
}

INSTANTIATE_TEST_SUITE_P(commands, fault_sweep, testing::ValuesIn(scenarios()),
                         [](const auto& each) { return each.param.name; });

}  // namespace pointer_sweep_test
