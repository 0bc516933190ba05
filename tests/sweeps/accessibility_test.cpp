#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "main/dispatcher.h"
#include "simulator/text/parse.h"
#include "tests/support/simulated_run.h"

/// As fault_sweep_test.cpp, for the commands that read and operate elements: every call with every
/// outcome it may have, once and from there on.
namespace accessibility_sweep_test {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 400x300 scale 1
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 300x200
    app Notes pid 41 bundle com.example.notes
        menu File > "Open Recent" > First press: retitle "First"
        menu File > Save disabled
        window 7 "Inbox" at 50,40 size 200x150
            AXButton "Send" at 60,50 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 60,80 size 150x30 value "hello" focused
            AXTextArea "Log" at 60,110 size 150x20 composer value "one"
            AXTextField "To" at 130,50 size 60x20 ignores writes
            AXSlider "Size" at 200,50 size 20x20 value 6 range 0..24
            AXRow "Ada" at 60,135 size 100x20
                AXButton at 70,135 size 20x20
                    AXStaticText value "Call"
            AXGroup "Page" at 60,160 size 100x20
                AXButton "Send" at 60,160 size 40x20
            AXWebArea "Talk" at 170,160 size 50x20
                AXButton "Reply" at 170,160 size 40x20
            AXMenu
                AXMenuItem "Cut"
        window 8 at 60,60 size 100x60 sheet of 7
            AXStaticText value "Sure?"
            AXButton "Yes" at 70,80 size 40x20 press: append "y" to Body
    app Hidden pid 42 bundle com.example.hidden hidden
        window 9 "One" at 60,60 size 100x60 minimized
)";

struct Scenario {
  std::string name;
  std::vector<std::string> commandLine;
  bool scoped = false;
};

std::ostream& operator<<(std::ostream& out, const Scenario& scenario) {
  return out << scenario.name;
}

std::vector<Scenario> scenarios() {
  const auto insert = [](const char* label, const char* mode) {
    return std::vector<std::string>{"ax-insert", "Notes", label, "70",
                                    "90",        mode,    "Hi",  "[\"hello\"]"};
  };
  return {
      {"list", {"ax-list", "Notes"}, true},
      {"dump", {"ax-dump", "Notes"}},
      {"find_text", {"ax-find-text", "Notes", "hello", "Send"}},
      {"texts_at", {"ax-texts-at", "Notes", "70", "90"}},
      {"at", {"ax-at", "Notes", "70", "55"}, true},
      {"press", {"ax-press", "com.example.notes", "70", "55"}, true},
      {"match", {"ax-match", "Notes", "body", "70", "90"}},
      {"press_match", {"ax-press-match", "Notes", "sen", "70", "55"}},
      {"press_exact", {"ax-press-exact", "Notes", "send", "last"}},
      {"press_exact_in_group", {"ax-press-exact", "Notes", "send", "only", "page"}, true},
      {"press_child", {"ax-press-child", "Notes", "Ada", "call"}},
      {"press_in_document", {"ax-press-in-document", "Notes", "Talk", "Reply"}},
      {"insert_replace", insert("Body", "replace")},
      {"insert_message", insert("", "message"), true},
      {"insert_caret", insert("Body", "caret")},
      {"insert_new_line", insert("Log", "new_line")},
      {"insert_ignored", insert("To", "end")},
      {"focus", {"ax-focus", "Notes", "Body", "70", "90"}},
      {"focused", {"ax-focused", "Notes"}, true},
      {"set_value", {"ax-set-value", "Notes", "70", "90", "Hi"}},
      {"menu", {"ax-menu", "Notes", "file", "open", "first"}},
      {"menu_disabled", {"ax-menu", "Notes", "File", "Save"}},
      {"menubar", {"ax-menubar", "Notes"}},
      {"modal", {"ax-modal", "Notes"}, true},
      {"modal_press", {"ax-modal-press", "Notes", "Sure?", "Yes"}},
      {"popup_items", {"ax-popup-items", "Notes"}},
      {"slider", {"ax-slider", "Notes", "Size"}},
      {"slider_number", {"ax-slider", "Notes", "Size", "7"}},
      {"slider_increment", {"ax-slider", "Notes", "Size", "increment"}},
      {"reveal", {"reveal", "Hidden"}},
  };
}

const simulator::World& world() {
  static const simulator::World parsed = simulator::parseWorld(desk);
  return parsed;
}

void run(TestMac& mac, const Scenario& scenario) {
  mac.driverWith(scenario.commandLine,
                 scenario.scoped ? Environment{{"CU_WINDOW", "inbox"}} : Environment{});
}

class accessibility_sweep : public testing::TestWithParam<Scenario> {};

TEST_P(accessibility_sweep, breaks_no_rule) {
  const Scenario& scenario = GetParam();
  std::vector<platform::Function> calls;
  {
    TestMac mac(world(), {}, Mode::direct);
    run(mac, scenario);
    for (const auto& entry : mac.desktop().trace()) calls.push_back(entry.call.function);
  }
  const platform::Pid target = scenario.name == "reveal" ? 42 : 41;
  std::map<platform::Function, std::size_t> occurrences;
  std::size_t runs = 0;
  for (const platform::Function function : calls) {
    const std::size_t occurrence = ++occurrences[function];
    for (const auto& outcome : simulator::admissibleOutcomes(function, world(), target)) {
      for (const bool onwards : {false, true}) {
        const simulator::Fault fault{function, occurrence, onwards, outcome};
        SCOPED_TRACE("fault: " + simulator::faultText(fault));
        TestMac mac(world(), {fault}, Mode::direct);
        run(mac, scenario);
        ++runs;
      }
      if (HasFailure()) return;  // one trace says enough
    }
  }
  EXPECT_GT(runs, calls.size());
}

/// A call of a run: which of its function it is, and whether it is a message to an element.
struct TracedCall {
  platform::Function function;
  std::size_t occurrence = 0;
  bool isMessage = false;
};

std::vector<TracedCall> callsOf(const TestMac& mac) {
  std::vector<TracedCall> calls;
  std::map<platform::Function, std::size_t> occurrences;
  for (const auto& entry : mac.desktop().trace()) {
    const platform::Function function = entry.call.function;
    const std::string_view name = platform::nameOf(function);
    calls.push_back({function, ++occurrences[function],
                     name.compare(0, 3, "ax.") == 0 || name == "private.ax-window"});
  }
  return calls;
}

std::size_t messagesIn(const std::vector<TracedCall>& calls, std::size_t first) {
  std::size_t count = 0;
  for (std::size_t i = first; i < calls.size(); ++i) count += calls[i].isMessage ? 1 : 0;
  return count;
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

/// How many time-outs a run is to cost when the application hangs right before the call of this
/// index: two, unless there is only one message or none. A message that times out may change what
/// comes after it, so that is counted in a run in which just this one does.
std::size_t timeOutsDue(const Scenario& scenario, const std::vector<TracedCall>& calls,
                        std::size_t hangingFrom) {
  std::size_t first = hangingFrom;
  while (first < calls.size() && !calls[first].isMessage) ++first;
  if (first == calls.size()) return 0;
  const simulator::Outcome hang{simulator::Outcome::Kind::hang, 0, {}};
  TestMac mac(world(), {{calls[first].function, calls[first].occurrence, false, hang}},
              Mode::direct);
  run(mac, scenario);
  return std::min<std::size_t>(2, messagesIn(callsOf(mac), first));
}

TEST_P(accessibility_sweep, loses_two_time_outs_to_a_hang_at_any_call) {
  const Scenario& scenario = GetParam();
  std::vector<TracedCall> calls;
  {
    TestMac mac(world(), {}, Mode::direct);
    run(mac, scenario);
    calls = callsOf(mac);
  }
  const std::string target = scenario.name == "reveal" ? "Hidden" : "Notes";
  for (std::size_t call = 0; call < calls.size(); ++call) {
    const std::string fault = "any " + std::to_string(call + 1) + " before hang " + target;
    SCOPED_TRACE(fault);
    TestMac mac(world(), {simulator::parseFault(fault, world())}, Mode::direct);
    run(mac, scenario);
    const auto due = static_cast<simulator::Microseconds>(timeOutsDue(scenario, calls, call));
    EXPECT_EQ(lostTime(mac), due * 6'000'000);
  }
}

TEST(accessibility_sweep_scenarios, have_every_command_that_reads_or_operates_elements) {
  std::set<std::string_view> swept;
  const std::vector<Scenario> all = scenarios();
  for (const Scenario& scenario : all) swept.insert(scenario.commandLine.front());
  for (const driver::Command& command : driver::commands()) {
    const std::string_view name = command.form.name;
    if (command.actsOnInput == driver::ActsOnInput::yes || name.starts_with("ax-")) {
      EXPECT_TRUE(swept.contains(name)) << name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(commands, accessibility_sweep, testing::ValuesIn(scenarios()),
                         [](const auto& each) { return each.param.name; });

}  // namespace accessibility_sweep_test
