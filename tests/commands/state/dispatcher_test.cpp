#include "main/dispatcher.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/inside.h"

namespace driver {
namespace {

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

/// All names in the order in which they are compared.
constexpr std::string_view namesInOrder[] = {
    "capture-service", "capture",        "bg-click",       "bg-scroll",
    "bg-move",         "bg-drag",        "bg-focus-hold",  "capture-probe",
    "focus-release",   "bg-key",         "bg-type",        "bg-paste-files",
    "watch-input",     "permissions",    "scene",          "lock-now",
    "lock-serve",      "lock-arm",       "lock-disarm",    "lock-status",
    "lock-query",      "lock-unlock",    "lock-guard",     "keep-awake",
    "session",         "windows",        "ax-find-text",   "ax-texts-at",
    "ax-press-child",  "ax-at",          "ax-press",       "ax-press-in-document",
    "ax-press-exact",  "ax-match",       "ax-press-match", "ax-popup-items",
    "ax-slider",       "ax-insert",      "ax-focus",       "reveal",
    "ax-menu",         "ax-menubar",     "ax-list",        "ax-dump",
    "ax-modal",        "ax-modal-press", "ax-focused",     "ax-set-value",
};

TEST(command_table, has_its_names_in_the_order_of_dispatch) {
  std::vector<std::string_view> names;
  for (const Command& command : commands()) names.push_back(command.form.name);
  EXPECT_EQ(names, std::vector<std::string_view>(std::begin(namesInOrder), std::end(namesInOrder)));
}

TEST(command_table, has_a_handler_in_each_row) {
  for (const Command& command : commands())
    EXPECT_NE(command.handler, nullptr) << command.form.name;
}

TEST(command_table, has_one_handler_for_the_capture_group) {
  ASSERT_GE(commands().size(), 8U);
  for (std::size_t i = 1; i < 8; ++i) EXPECT_EQ(commands()[i].handler, commands()[1].handler);
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

}  // namespace
}  // namespace driver
