#include <gtest/gtest.h>

#include "tests/support/pasting.h"

/// Pastes that are refused before the clipboard is touched.
namespace paste_refusals_test {

using namespace testing_support;

/// What a caller sees of such a paste on this desk. The clipboard is not even read.
std::string refusal(TestMac& mac, const std::vector<std::string>& words,
                    const Environment& environment = {}) {
  std::vector<std::string> arguments = {"bg-paste-files"};
  arguments.insert(arguments.end(), words.begin(), words.end());
  const Result run = mac.driverWith(arguments, environment);
  for (const std::string& call : run.calls) EXPECT_NE(call.compare(0, 10, "pasteboard"), 0) << call;
  EXPECT_EQ(run.effects.find("post"), std::string::npos) << run.effects;
  EXPECT_EQ(clipboard(mac), usersClipboard);
  return seen(run);
}

std::string refusalOn(const std::string& furtherLines, const std::vector<std::string>& words,
                      const std::vector<std::string>& faults = {}) {
  TestMac mac(pastingDeskWith(furtherLines), faults);
  return refusal(mac, words);
}

TEST(paste_refusal, of_too_few_words) {
  const std::string usage = failure("usage: bg-paste-files <app> <path>...");
  EXPECT_EQ(refusalOn("", {}), usage);
  EXPECT_EQ(refusalOn("", {"Notes"}), usage);
  EXPECT_EQ(refusalOn("", {""}), usage);
}

TEST(paste_refusal, of_an_unusable_session_comes_before_that_of_too_few_words) {
  const std::string unusable =
      failure("the Mac is locked or not on console; background input is unavailable");
  EXPECT_EQ(refusalOn("session locked\n", {"Notes", "/a"}), unusable);
  EXPECT_EQ(refusalOn("session off-console\n", {"Notes", "/a"}), unusable);
  EXPECT_EQ(refusalOn("session locked\n", {}), unusable);
}

TEST(paste_refusal, of_an_unknown_front_process) {
  EXPECT_EQ(refusalOn("missing GetFrontProcess\n", {"Notes", "/a"}),
            failure("current foreground process is unavailable"));
}

TEST(paste_refusal, of_a_session_that_becomes_unusable_after_the_first_check) {
  for (const char* happening : {"lock", "leave console"}) {
    EXPECT_EQ(
        refusalOn("", {"Notes", "/a"}, {std::string("windowserver.session 2 before ") + happening}),
        "0 {\"error\":\"the Mac is locked or not on console\",\"locked\":true,"
        "\"ok\":false}\n");
  }
}

TEST(paste_refusal, without_a_service) {
  TestMac mac(pastingDesk);
  EXPECT_EQ(refusal(mac, {"Notes", "/a"}, {{"CU_CAPTURE_PID", "901"}}),
            failure("native screen sharing stopped; background input is disabled"));
}

TEST(paste_refusal, of_a_path_that_is_relative_to_nothing) {
  std::string desk(pastingDesk);
  desk.replace(desk.find("/Users/ada"), 10, "");
  TestMac mac(desk);
  EXPECT_EQ(refusal(mac, {"Notes", "/a", "b.txt"}), failure("no current directory for b.txt"));

  TestMac absolute(desk);
  EXPECT_EQ(seen(absolute.driver("bg-paste-files Notes /a")), pastedIntoNotes);
}

TEST(paste_refusal, of_a_path_that_is_no_text) {
  EXPECT_EQ(refusalOn("", {"Notes", "/a", "/\xFF.txt"}), failure("cannot paste \\/\uFFFD.txt"));
}

TEST(paste_refusal, of_an_application_that_does_not_run_or_is_hidden) {
  const std::string message = refused("target app is not running or is hidden");
  EXPECT_EQ(refusalOn("", {"Nobody", "/a"}), message);
  EXPECT_EQ(refusalOn("", {"pid:99", "/a"}), message);
  EXPECT_EQ(refusalOn("", {"", "/a"}), message);
  EXPECT_EQ(refusalOn("app Docs pid 43 hidden\n    window 20 \"Letter\" at 0,0 size 90x90\n",
                      {"Docs", "/a"}),
            message);
}

TEST(paste_refusal, without_a_window_that_can_only_be_one) {
  const std::string message = refused("no unambiguous target keyboard window");
  EXPECT_EQ(refusalOn("app Docs pid 43\n", {"Docs", "/a"}), message);
  EXPECT_EQ(refusalOn(R"(
app Docs pid 43
    window 20 "Letter" at 0,0 size 90x90 unnumbered
    window 21 "Letter" at 0,0 size 90x90 unnumbered
)",
                      {"Docs", "/a"}),
            message);
}

TEST(paste_refusal, while_the_user_types_in_another_window_of_the_application) {
  TestMac mac(pastingDeskWith(R"(
app Docs pid 43
    window 20 "Letter" at 0,0 size 90x90
    window 21 "Notes" at 0,100 size 90x90 focused
at 0us front Docs
)"));
  EXPECT_EQ(refusal(mac, {"Docs", "/a"}, {{"CU_WINDOW", "letter"}}),
            failure("another window of the target app currently owns the user's keyboard; "
                    "background input will not switch it"));
}

TEST(paste_refusal, when_the_user_turns_to_another_window_after_the_first_check) {
  TestMac mac(pastingDeskWith(R"(
app Docs pid 43
    window 20 "Letter" at 0,0 size 90x90
    window 21 "Notes" at 0,100 size 90x90 focused
)"),
              {"workspace.applications 2 before front Docs"});
  EXPECT_EQ(refusal(mac, {"Docs", "/a"}, {{"CU_WINDOW", "letter"}}),
            refused("another window of the target app currently owns the user's keyboard"));
}

TEST(paste_refusal, when_focus_cannot_be_given) {
  const std::string message = refused("background keyboard focus is unavailable on this macOS");
  EXPECT_EQ(refusalOn("missing SLPSPostEventRecordTo\n", {"Notes", "/a"}), message);
  EXPECT_EQ(refusalOn("missing GetProcessForPID\n", {"Notes", "/a"}), message);
  EXPECT_EQ(refusalOn("", {"Notes", "/a"}, {"private.process-for-pid 1 error -600"}), message);
  EXPECT_EQ(refusalOn("", {"Notes", "/a"}, {"private.post-record 1 error -600"}), message);
}

TEST(paste_refusal, when_no_window_can_be_made_key_takes_focus_back) {
  const std::string docs = R"(
app Docs pid 43
    window 20 "Letter" at 100,80 size 800x600
        AXTextArea "Text" at 120,130 size 700x400
)";
  for (const char* fault : {"private.post-record 2 error -600", "private.post-record 3 error -600",
                            "private.process-for-pid 2 error -600"}) {
    TestMac mac(pastingDeskWith(docs), {fault});
    EXPECT_EQ(refusal(mac, {"Docs", "/a"}), refused("background key-window selection failed"));
    EXPECT_EQ(mac.world().applications[3].focusByRecord, 0U) << fault;
  }
}

}  // namespace paste_refusals_test
