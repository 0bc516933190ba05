#include <gtest/gtest.h>
#include <signal.h>

#include <array>
#include <set>

#include "main/dispatcher.h"
#include "simulator/text/parse.h"
#include "tests/support/simulated_run.h"
#include "tests/support/temporary_folder.h"

/// Somebody tells a run to end, by each signal that does so, at each call and at each millisecond
/// of it. The rules are checked in each run: that nothing more is begun, that what is pressed is
/// let go, that focus and clipboard come back, and in time.
namespace {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 400x300 scale 1
    process 900
    pasteboard item "public.utf8-plain-text" "old" "public.rtf" "{old}"
    pasteboard item "public.png" "picture"
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 300x200
    app Notes pid 41 bundle com.example.notes
        menu File > Save cmd s press: append "saved" to Body
        window 7 "Inbox" at 50,40 size 200x150
            AXButton "Send" at 60,50 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 60,80 size 150x30 value "hello" focused
            AXSlider "Size" at 200,50 size 20x20 value 6 range 0..24
            AXRow "Ada" at 60,135 size 100x20
                AXButton at 70,135 size 20x20
                    AXStaticText value "Call"
            AXWebArea "Talk" at 170,160 size 50x20
                AXButton "Reply" at 170,160 size 40x20
        window 8 at 60,110 size 100x60 sheet of 7
            AXStaticText value "Sure?"
            AXButton "Yes" at 70,130 size 40x20 press: append "y" to Body
    app Mail pid 42 bundle com.example.mail
        menu Edit > Paste cmd v
        window 9 "Draft" at 20,20 size 150x150
            AXTextArea "Letter" at 20,30 size 150x100 takes files focused
    app Chat pid 43 bundle com.example.chat chromium
        window 12 "Chat" at 200,20 size 150x150
            AXTextArea "Message" at 210,30 size 40x20 focused takes files
    app Hidden pid 44 bundle com.example.hidden hidden
        window 13 "One" at 60,60 size 100x60 minimized
)";

constexpr std::array endingSignals = {SIGTERM, SIGINT, SIGHUP};
constexpr const char* told = "{\"error\":\"the run was told to end by a signal\",\"ok\":false}\n";

struct Scenario {
  std::string name;
  std::vector<std::string> arguments;
};

/// The name in a test's name.
std::ostream& operator<<(std::ostream& out, const Scenario& scenario) {
  return out << scenario.name;
}

const TemporaryFolder& pictures() {
  static const TemporaryFolder folder;
  return folder;
}

std::vector<Scenario> scenarios() {
  return {
      {"click", {"bg-click", "Notes", "70", "170"}},
      {"double_click", {"bg-click", "Chat", "220", "40", "left", "2"}},
      {"right_click", {"bg-click", "Notes", "70", "170", "right"}},
      {"scroll", {"bg-scroll", "Notes", "70", "170", "0", "3"}},
      {"move", {"bg-move", "Chat", "220", "40"}},
      {"drag", {"bg-drag", "Notes", "70", "90", "80", "95"}},
      {"hold", {"bg-focus-hold", "Notes"}},
      {"capture", {"capture", "Notes", pictures().path("picture.png")}},
      {"capture_probe", {"capture-probe"}},
      {"focus_release", {"focus-release", "41", "7"}},
      {"key", {"bg-key", "Mail", "ctrl+shift+a"}},
      {"chord", {"bg-key", "Chat", "cmd+shift+alt+ctrl+x"}},
      {"chord_in_front", {"bg-key", "Browser", "cmd+shift+alt+ctrl+x"}},
      {"shortcut", {"bg-key", "Notes", "cmd+s"}},
      {"text", {"bg-type", "Mail", "one, two and three and four\nfive"}},
      {"text_in_front", {"bg-type", "Browser", "one\ntwo"}},
      {"text_in_chromium", {"bg-type", "Chat", "a"}},
      {"paste", {"bg-paste-files", "Mail", "/a.txt"}},
      {"paste_by_keys", {"bg-paste-files", "Chat", "/a.txt"}},
      {"permissions", {"permissions"}},
      {"scene", {"scene"}},
      {"lock_now", {"lock-now"}},
      {"lock_serve", {"lock-serve"}},
      {"lock_arm", {"lock-arm"}},
      {"lock_disarm", {"lock-disarm"}},
      {"lock_status", {"lock-status"}},
      {"lock_query", {"lock-query"}},
      {"lock_unlock", {"lock-unlock"}},
      {"session", {"session"}},
      {"windows", {"windows", "Notes"}},
      {"find_text", {"ax-find-text", "Notes", "hello", "Send"}},
      {"texts_at", {"ax-texts-at", "Notes", "70", "90"}},
      {"press_child", {"ax-press-child", "Notes", "Ada", "call"}},
      {"at", {"ax-at", "Notes", "70", "55"}},
      {"press", {"ax-press", "Notes", "70", "55"}},
      {"press_in_document", {"ax-press-in-document", "Notes", "Talk", "Reply"}},
      {"press_exact", {"ax-press-exact", "Notes", "send", "last"}},
      {"match", {"ax-match", "Notes", "body", "70", "90"}},
      {"press_match", {"ax-press-match", "Notes", "sen", "70", "55"}},
      {"popup_items", {"ax-popup-items", "Notes"}},
      {"slider", {"ax-slider", "Notes", "Size", "increment"}},
      {"slider_number", {"ax-slider", "Notes", "Size", "7"}},
      {"insert", {"ax-insert", "Notes", "Body", "70", "90", "end", "Hi"}},
      {"replace", {"ax-insert", "Notes", "Body", "70", "90", "replace", "Hi", "[\"hello\"]"}},
      {"focus", {"ax-focus", "Notes", "Body", "70", "90"}},
      {"reveal", {"reveal", "Hidden"}},
      {"menu", {"ax-menu", "Notes", "file", "save"}},
      {"menubar", {"ax-menubar", "Notes"}},
      {"list", {"ax-list", "Notes"}},
      {"dump", {"ax-dump", "Notes"}},
      {"modal", {"ax-modal", "Notes"}},
      {"modal_press", {"ax-modal-press", "Notes", "Sure?", "Yes"}},
      {"focused", {"ax-focused", "Notes"}},
      {"set_value", {"ax-set-value", "Notes", "70", "90", "Hi"}},
  };
}

const simulator::World& world() {
  static const simulator::World parsed = simulator::parseWorld(desk);
  return parsed;
}

Result run(TestMac& mac, const Scenario& scenario) {
  return mac.driverWith(scenario.arguments, {{"CU_CAPTURE_PID", "900"}});
}

/// A run says that it was told to end and dies of it, or has said all that it had to say.
void checkEnding(const Result& run, int number, const Result& undisturbed) {
  if (run.output == undisturbed.output && run.status == undisturbed.status) return;
  EXPECT_EQ(run.status, 128 + number);
  EXPECT_TRUE(run.output == told || run.output == undisturbed.output) << run.output;
}

class told_to_end : public testing::TestWithParam<Scenario> {};

TEST_P(told_to_end, at_any_call_breaks_no_rule) {
  TestMac recorded(world(), {}, Mode::direct);
  const Result undisturbed = run(recorded, GetParam());
  const std::size_t calls = recorded.desktop().trace().size();
  std::size_t endings = 0;
  for (std::size_t call = 1; call <= calls; ++call) {
    for (const int number : endingSignals) {
      const std::string fault =
          "any " + std::to_string(call) + " before signal " + std::to_string(number);
      SCOPED_TRACE(fault);
      TestMac mac(world(), {simulator::parseFault(fault, world())}, Mode::direct);
      const Result ended = run(mac, GetParam());
      checkEnding(ended, number, undisturbed);
      if (ended.status == 128 + number) ++endings;
    }
    if (HasFailure()) return;  // one trace says enough
  }
  EXPECT_GE(endings, 3 * (calls - 3));  // all but those while the line is written
}

TEST_P(told_to_end, at_any_millisecond_breaks_no_rule) {
  TestMac recorded(world(), {}, Mode::direct);
  const Result undisturbed = run(recorded, GetParam());
  for (simulator::Microseconds at = 0; at <= undisturbed.elapsed; at += 1'000) {
    SCOPED_TRACE(std::to_string(at) + " us");
    simulator::World scripted = world();
    scripted.script.push_back({at + 1, simulator::parseHappening("signal 15", scripted)});
    TestMac mac(std::move(scripted), {}, Mode::direct);
    checkEnding(run(mac, GetParam()), SIGTERM, undisturbed);
    if (HasFailure()) return;
  }
}

/// The application hangs from the start: most waits are for it.
TEST_P(told_to_end, while_the_application_hangs_breaks_no_rule) {
  for (const simulator::Microseconds at : {1'000, 3'000'000, 7'000'000}) {
    simulator::World scripted = world();
    for (auto& application : scripted.applications) application.hangs = true;
    scripted.script.push_back({at, simulator::parseHappening("signal 15", scripted)});
    TestMac recorded(world(), {}, Mode::direct);
    for (auto& application : recorded.desktop().mac().world.applications) application.hangs = true;
    const Result undisturbed = run(recorded, GetParam());
    TestMac mac(std::move(scripted), {}, Mode::direct);
    const Result ended = run(mac, GetParam());
    checkEnding(ended, SIGTERM, undisturbed);
    EXPECT_TRUE(undisturbed.elapsed <= at || ended.elapsed <= at + 550'000) << ended.elapsed;
  }
}

/// The application that a scenario is about; Notes for those that are about none.
std::string targetOf(const Scenario& scenario) {
  for (const auto& application : world().applications) {
    if (scenario.arguments.size() > 1 && scenario.arguments[1] == application.name) {
      return scenario.arguments[1];
    }
  }
  return "Notes";
}

/// The application stops answering while the run is under way, between keys that go down too.
TEST_P(told_to_end, while_the_application_hangs_from_any_call_on_breaks_no_rule) {
  TestMac recorded(world(), {}, Mode::direct);
  const Result undisturbed = run(recorded, GetParam());
  const std::size_t calls = recorded.desktop().trace().size();
  for (std::size_t call = 1; call <= calls; ++call) {
    const std::string fault =
        "any " + std::to_string(call) + " before hang " + targetOf(GetParam());
    SCOPED_TRACE(fault);
    simulator::World scripted = world();
    scripted.script.push_back({4'000'000, simulator::parseHappening("signal 15", scripted)});
    TestMac mac(std::move(scripted), {simulator::parseFault(fault, world())}, Mode::direct);
    const Result ended = run(mac, GetParam());
    EXPECT_LE(ended.elapsed, 4'550'000);
    if (HasFailure()) return;
  }
}

/// The first signal comes while the paste waits, the second while its clipboard is being put back.
TEST(told_to_end_twice, ends_at_once_and_writes_nothing) {
  simulator::World scripted = world();
  for (const simulator::Microseconds at : {450'000, 460'000}) {
    scripted.script.push_back({at, simulator::parseHappening("signal 15", scripted)});
  }
  TestMac mac(std::move(scripted), {}, Mode::direct);
  EXPECT_EQ(seen(mac.driver("bg-paste-files Mail /a.txt")), "143 ");
}

TEST(told_to_end_scenarios, have_every_command_that_does_not_live_on) {
  std::set<std::string_view> swept;
  const std::vector<Scenario> all = scenarios();
  for (const Scenario& scenario : all) swept.insert(scenario.arguments.front());
  for (const driver::Command& command : driver::commands()) {
    EXPECT_EQ(swept.contains(command.form.name), !command.livesOn) << command.form.name;
  }
}

INSTANTIATE_TEST_SUITE_P(commands, told_to_end, testing::ValuesIn(scenarios()),
                         [](const auto& each) { return each.param.name; });

}  // namespace
