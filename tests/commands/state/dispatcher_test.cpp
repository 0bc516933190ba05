#include "main/dispatcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "capture/commands.h"
#include "tests/support/inside.h"

namespace driver {
namespace dispatcher_test {

using namespace testing_support;

constexpr const char* desk = R"(
    process 900
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

constexpr const char* sharingStopped =
    "native screen sharing stopped; background input is disabled";

constexpr const char* locked =
    "the Mac is locked or not on console; background input is unavailable";

TEST(command_table, has_each_name_once) {
  std::set<std::string_view> names;
  for (const Command& command : commands()) {
    EXPECT_TRUE(names.insert(command.form.name).second) << command.form.name;
  }
}

TEST(command_table, has_a_handler_in_each_row) {
  for (const Command& command : commands())
    EXPECT_NE(command.handler, nullptr) << command.form.name;
}

TEST(command_table, has_the_capture_group_as_it_stands) {
  ASSERT_GT(commands().size(), captureCommands.size());
  std::set<void (*)(const Arguments&)> handlers;
  for (std::size_t i = 0; i < captureCommands.size(); ++i) {
    const Command& command = commands()[i + 1];  // after the capture service
    EXPECT_EQ(command.form.name, captureCommands[i].form.name);
    EXPECT_EQ(command.actsOnInput, captureCommands[i].actsOnInput) << command.form.name;
    EXPECT_TRUE(handlers.insert(command.handler).second) << command.form.name;
  }
}

TEST(driver, refuses_each_command_that_acts_on_input_while_the_screen_is_locked) {
  for (const Command& command : commands()) {
    if (command.actsOnInput == ActsOnInput::no) continue;
    TestMac mac(std::string(desk) + "    session locked\n");
    const std::string name(command.form.name);
    EXPECT_EQ(seen(mac.driver(name)), failure(locked));
    EXPECT_EQ(seen(mac.driver(name + " Notes 130 95 x y")), failure(locked)) << name;
  }
}

TEST(driver, refuses_each_command_in_the_background_while_the_foreground_is_unknown) {
  for (const Command& command : commands()) {
    if (command.actsOnInput != ActsOnInput::inBackground) continue;
    TestMac mac(desk, {"private.front-process 1 error -600"});
    EXPECT_EQ(seen(mac.driver(std::string(command.form.name))),
              failure("current foreground process is unavailable"))
        << command.form.name;
  }
}

TEST(driver, checks_unknown_names_by_how_they_begin) {
  TestMac mac(std::string(desk) + "    session locked\n");
  for (const char* name : {"bg-fly", "bg-"}) {
    EXPECT_EQ(seen(mac.driver(name)), failure(locked)) << name;
    EXPECT_EQ(seen(mac.driverWith({name, "Notes"})), failure(locked)) << name;
  }
  for (const char* name : {"bg", "xbg-click", "BG-click", "Ax-press", "fly", ""}) {
    const Result run = mac.driverWith({name, "Browser"}, {{"CU_WINDOW", "inbox"}});
    EXPECT_EQ(seen(run), failure("unknown command: " + std::string(name)));
    EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "windowserver.session"), 0) << name;
  }
}

TEST(driver, asks_for_the_foreground_before_it_tells_that_a_name_is_unknown) {
  TestMac mac(std::string(desk) + "    missing GetFrontProcess\n");
  EXPECT_EQ(seen(mac.driver("bg-fly")), failure("current foreground process is unavailable"));
  TestMac scoped(desk);
  EXPECT_EQ(seen(scoped.driver("bg-fly pid:40", {{"CU_WINDOW", "inbox"}})),
            failure("another window of the target app currently owns the user's keyboard; "
                    "background input will not switch it"));
}

TEST(driver, without_a_command_tells_its_usage) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driverWith({})), failure("usage: driver <command> ..."));
}

TEST(driver, without_even_its_own_path_tells_its_usage) {
  TestMac mac(desk);
  EXPECT_EQ(seen(runInside(mac, [] { run({}); })), failure("usage: driver <command> ..."));
}

TEST(driver, without_a_command_does_not_ask_for_the_service) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driverWith({}, {{"CU_CAPTURE_PID", "12345"}})),
            failure("usage: driver <command> ..."));
}

TEST(driver, refuses_an_unknown_command_by_its_name) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("fly")), failure("unknown command: fly"));
  EXPECT_EQ(seen(mac.driver("fly Notes 1 2")), failure("unknown command: fly"));
}

TEST(driver, compares_names_exactly) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("Scene")), failure("unknown command: Scene"));
  EXPECT_EQ(seen(mac.driver("SCENE")), failure("unknown command: SCENE"));
  EXPECT_EQ(seen(mac.driver("scen")), failure("unknown command: scen"));
  EXPECT_EQ(seen(mac.driver("scene2")), failure("unknown command: scene2"));
  EXPECT_EQ(seen(mac.driverWith({" scene"})), failure("unknown command:  scene"));
  EXPECT_EQ(seen(mac.driverWith({"scene "})), failure("unknown command: scene "));
}

TEST(driver, has_no_options) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("--help")), failure("unknown command: --help"));
  EXPECT_EQ(seen(mac.driver("-v scene")), failure("unknown command: -v"));
}

TEST(driver, takes_an_empty_name_for_an_unknown_command) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driverWith({""})), failure("unknown command: "));
}

TEST(driver, tells_apart_letters_that_only_look_alike) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("s\u0441ene")), failure("unknown command: s\u0441ene"));
}

TEST(driver, asks_for_the_service_before_anything_else) {
  TestMac mac(std::string(desk) + "    session locked\n");
  for (const char* commandLine :
       {"permissions", "scene", "session", "windows", "windows Notes", "focus-release", "fly",
        "bg-click", "bg-click Notes 130 95", "ax-press Notes 1 1", "capture Notes", "bg-fly"}) {
    const Result run = mac.driver(commandLine, {{"CU_CAPTURE_PID", "12345"}});
    EXPECT_EQ(seen(run), failure(sharingStopped)) << commandLine;
    EXPECT_EQ(run.calls.back(), "process.null-signal") << commandLine;
  }
}

TEST(driver, checks_the_input_context_before_the_arguments) {
  TestMac mac(std::string(desk) + "    session locked\n");
  for (const char* commandLine :
       {"bg-click", "bg-fly", "ax-press", "reveal", "ax-press Notes x y"}) {
    EXPECT_EQ(seen(mac.driver(commandLine)),
              failure("the Mac is locked or not on console; background input is unavailable"))
        << commandLine;
  }
}

TEST(driver, lets_queries_pass_while_the_screen_is_locked) {
  TestMac mac(std::string(desk) + "    session locked\n");
  EXPECT_EQ(seen(mac.driver("session")), success(R"({"locked":true,"ok":true,"onConsole":true})"));
  EXPECT_EQ(seen(mac.driver("fly")), failure("unknown command: fly"));
}

TEST(driver, proceeds_while_the_service_is_alive) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("session", {{"CU_CAPTURE_PID", "900"}})),
            success(R"({"locked":false,"ok":true,"onConsole":true})"));
}

}  // namespace dispatcher_test
}  // namespace driver
