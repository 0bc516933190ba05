#include "input/context.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using enum ActsOnInput;

using Calls = std::vector<std::string>;

constexpr const char* contextDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 600x500
        window 6 "Inbox" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Other" at 100,80 size 800x600
)";

constexpr const char* locked =
    "the Mac is locked or not on console; background input is unavailable";
constexpr const char* noForeground = "current foreground process is unavailable";
constexpr const char* usersKeyboard =
    "another window of the target app currently owns the user's keyboard; background input will "
    "not switch it";

const Environment contextInbox = {{"CU_WINDOW", "inbox"}};
constexpr const char* passed = "0 ";

/// `words` follow the name of the command.
Result check(TestMac& mac, ActsOnInput command, const Arguments& words,
             const Environment& environment = {}) {
  Arguments commandLine = {"driver", "act"};
  commandLine.insert(commandLine.end(), words.begin(), words.end());
  return runInside(
      mac, [&] { checkInputContext(command, commandLine); }, environment);
}

std::string seenOfCheck(const std::string& world, ActsOnInput command, const Arguments& words,
                        const Environment& environment = {}, std::vector<std::string> faults = {}) {
  TestMac mac(world, std::move(faults));
  return seen(check(mac, command, words, environment));
}

TEST(checkInputContext, asks_nothing_about_commands_that_send_no_input) {
  TestMac mac(std::string(contextDesk) + "    session locked\n");
  const Result run = check(mac, no, {"Browser"}, contextInbox);
  EXPECT_EQ(seen(run), passed);
  EXPECT_EQ(run.calls, Calls{});
}

TEST(checkInputContext, fails_for_input_while_the_session_is_unusable) {
  for (const char* session : {"locked", "off-console", "locked off-console"}) {
    const std::string world = std::string(contextDesk) + "    session " + session + "\n";
    for (const ActsOnInput command : {yes, inBackground}) {
      EXPECT_EQ(seenOfCheck(world, command, {"Notes"}), failure(locked)) << session;
      EXPECT_EQ(seenOfCheck(world, command, {}), failure(locked)) << session;
    }
  }
}

TEST(checkInputContext, fails_for_bg_commands_while_the_foreground_is_unknown) {
  const std::vector<std::string> faults = {"private.front-process 1 error -600"};
  EXPECT_EQ(seenOfCheck(contextDesk, inBackground, {}, {}, faults), failure(noForeground));
  EXPECT_EQ(seenOfCheck(contextDesk, inBackground, {"Notes"}, contextInbox, faults),
            failure(noForeground));
  EXPECT_EQ(
      seenOfCheck(std::string(contextDesk) + "    missing GetFrontProcess\n", inBackground, {}),
      failure(noForeground));
}

TEST(checkInputContext, lets_other_input_pass_while_the_foreground_is_unknown) {
  const std::vector<std::string> faults = {"private.front-process 1 error -600"};
  EXPECT_EQ(seenOfCheck(contextDesk, yes, {"Notes"}, {}, faults), passed);
  EXPECT_EQ(seenOfCheck(contextDesk, yes, {"Browser"}, contextInbox, faults), passed);
}

TEST(checkInputContext, finds_the_session_unusable_before_it_asks_for_the_foreground) {
  TestMac mac(std::string(contextDesk) + "    session locked\n    missing GetFrontProcess\n");
  const Result run = check(mac, inBackground, {});
  EXPECT_EQ(seen(run), failure(locked));
  EXPECT_EQ(run.calls, Calls{"windowserver.session"});
}

TEST(checkInputContext, asks_for_no_more_than_the_session_without_a_window_scope) {
  TestMac mac(contextDesk);
  const Result run = check(mac, yes, {"Browser", "10", "40"});
  EXPECT_EQ(seen(run), passed);
  EXPECT_EQ(run.calls, Calls{"windowserver.session"});
}

TEST(checkInputContext, asks_for_no_application_without_an_argument) {
  TestMac mac(contextDesk);
  const Result run = check(mac, yes, {}, contextInbox);
  EXPECT_EQ(seen(run), passed);
  EXPECT_EQ(run.calls, Calls{"windowserver.session"});
}

TEST(checkInputContext, refuses_input_beside_the_users_keyboard_focus) {
  // The front application's focused window is out of scope.
  EXPECT_EQ(seenOfCheck(contextDesk, yes, {"Browser"}, contextInbox), failure(usersKeyboard));
  EXPECT_EQ(seenOfCheck(contextDesk, inBackground, {"Browser"}, contextInbox),
            failure(usersKeyboard));
  EXPECT_EQ(seenOfCheck(contextDesk, inBackground, {"pid:40"}, contextInbox),
            failure(usersKeyboard));
  EXPECT_EQ(seenOfCheck(contextDesk, yes, {"com.example.browser"}, contextInbox),
            failure(usersKeyboard));
}

TEST(checkInputContext, lets_input_pass_into_the_window_that_has_the_users_keyboard) {
  const Environment start = {{"CU_WINDOW", "Start"}};
  EXPECT_EQ(seenOfCheck(contextDesk, yes, {"Browser"}, start), passed);
  EXPECT_EQ(seenOfCheck(contextDesk, inBackground, {"Browser"}, start), passed);
}

TEST(checkInputContext, does_not_mind_the_focus_of_an_application_in_the_background) {
  TestMac mac(contextDesk);
  const Result run = check(mac, yes, {"Notes"}, contextInbox);
  EXPECT_EQ(seen(run), passed);
  EXPECT_EQ(run.calls,
            (Calls{"windowserver.session", "workspace.applications-with-bundle",
                   "workspace.applications", "loader.open-library", "loader.find-symbol",
                   "loader.find-symbol", "private.front-process", "private.process-pid"}));
}

TEST(checkInputContext, lets_an_application_that_does_not_run_pass) {
  TestMac mac(contextDesk);
  const Result run = check(mac, yes, {"Nobody"}, contextInbox);
  EXPECT_EQ(seen(run), passed);
  EXPECT_EQ(run.calls, (Calls{"windowserver.session", "workspace.applications-with-bundle",
                              "workspace.applications"}));
}

TEST(checkInputContext, asks_for_the_foreground_of_a_bg_command_once) {
  TestMac mac(contextDesk);
  const Result run = check(mac, inBackground, {"pid:41"}, contextInbox);
  EXPECT_EQ(seen(run), passed);
  EXPECT_EQ(run.calls, (Calls{"windowserver.session", "loader.open-library", "loader.find-symbol",
                              "loader.find-symbol", "private.front-process", "private.process-pid",
                              "workspace.application"}));
}

TEST(checkInputContext, refuses_input_when_the_focused_window_cannot_be_read) {
  for (const char* fault : {"ax.attribute 1 error -25212", "ax.attribute 1 error -25204",
                            "ax.attribute 1 wrong", "ax.attribute 1 hang"}) {
    EXPECT_EQ(seenOfCheck(contextDesk, yes, {"Browser"}, {{"CU_WINDOW", "Start"}}, {fault}),
              failure(usersKeyboard))
        << fault;
  }
  const std::string withoutWindow =
      "app Browser pid 40 frontmost no-focused-window\n"
      "    window 5 \"Inbox\" at 0,30 size 600x500\n";
  EXPECT_EQ(seenOfCheck(withoutWindow, yes, {"Browser"}, contextInbox), failure(usersKeyboard));
}

TEST(checkInputContext, refuses_input_without_the_accessibility_permission) {
  EXPECT_EQ(seenOfCheck(std::string(contextDesk) + "    deny accessibility\n", yes, {"Browser"},
                        {{"CU_WINDOW", "Start"}}),
            failure(usersKeyboard));
}

TEST(checkInputContext, writes_nothing_to_the_application) {
  TestMac mac(contextDesk);
  EXPECT_EQ(check(mac, yes, {"Browser"}, {{"CU_WINDOW", "Start"}}).effects, "");
}

TEST(checkInputContext, takes_no_time) {
  TestMac mac(contextDesk);
  EXPECT_EQ(check(mac, inBackground, {"Browser"}, {{"CU_WINDOW", "Start"}}).elapsed, 0);
}

}  // namespace
}  // namespace driver
