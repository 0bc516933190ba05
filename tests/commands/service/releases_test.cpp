#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "tests/support/guarded.h"
#include "tests/support/pasting.h"
#include "tests/support/service_desk.h"
#include "tests/support/temporary_folder.h"

/// What runs meet on a Mac of one release or another.
namespace releases_test {

using namespace testing_support;

constexpr const char* declined =
    R"(Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3801 \"The user declined )"
    R"(TCCs for application, window, display capture\")";

simulator::Pid front(const TestMac& mac) { return mac.world().frontmost; }

void answerQuestion(TestMac& mac) {
  const auto& window = mac.world().windows.front();
  const int x = static_cast<int>(window.frame.x) + 150;
  const int y = static_cast<int>(window.frame.y) + 146;
  mac.desktop().happen(simulator::parseHappening(
      "user click " + std::to_string(x) + "," + std::to_string(y), mac.world()));
}

TEST(releases, ask_again_before_a_picture_is_taken) {
  for (const char* release : {"macos 15", "macos 26"}) {
    TestMac mac(std::string(serviceDesk) + "    " + release + "\n");
    const TemporaryFolder folder;
    const std::string line = "capture Notes " + folder.path("out.png");
    const std::string refused =
        success(std::string(R"({"error":")") + declined + R"(","ok":false})");

    EXPECT_EQ(seen(mac.driver(line)), refused);
    EXPECT_EQ(front(mac), 300);
    EXPECT_EQ(seen(mac.driver(line)), refused);
    EXPECT_EQ(folder.names(), std::vector<std::string>{});
    answerQuestion(mac);
    EXPECT_EQ(front(mac), 40);
    EXPECT_EQ(mac.driver(line).status, 0);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"out.png"});
  }
}

TEST(releases, ask_again_in_the_middle_of_a_click) {
  TestMac mac(std::string(serviceDesk) + "    macos 15\n");

  EXPECT_EQ(seen(mac.driver("bg-click Notes 130 95")),
            success(R"({"changed":true,"ok":true,"via":"background","window":7})"));
  EXPECT_EQ(front(mac), 300);
}

TEST(releases, ask_again_before_a_window_is_shared) {
  TestMac mac(std::string(serviceDesk) + "    macos 15\n");

  EXPECT_EQ(seen(serve(mac, {openLine("n", "Notes")})),
            failedService({}, std::string("native screen sharing unavailable: ") + declined));
  EXPECT_EQ(front(mac), 300);
  answerQuestion(mac);
  EXPECT_EQ(serve(mac, {openLine("n", "Notes")}).status, 0);
}

TEST(releases, keep_what_others_have_copied_to_themselves) {
  TestMac mac(pastingDeskWith("macos 26\nsystem recording-question never\n"));

  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt")),
            testing_support::refused("the clipboard could not be read"));
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(releases, let_a_read_that_does_not_come_back_be_ended) {
  TestMac mac(pastingDeskWith("system pasteboard-reads hanging\nat 9s signal 15\n"));

  const Result run = mac.driver("bg-paste-files Notes /a.txt");

  EXPECT_EQ(seen(run), "143 {\"error\":\"the run was told to end by a signal\",\"ok\":false}\n");
  EXPECT_EQ(run.elapsed, 9'040'000);  // the focus is given back
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(releases, refuse_the_guard_its_tap) {
  EXPECT_EQ(seen(guard("system key-taps refused\n" + std::string(guardedDesk))),
            failure("cannot watch for the user's return: accessibility permission is missing"));
}

constexpr const char* closingDesk = R"(
    app Notes pid 41 bundle com.example.notes frontmost
        window 7 "Inbox" at 100,80 size 800x600
        window 9 "Outbox" at 100,80 size 400x300
    at 2s in Notes close window "Inbox"
    at 3s input "{\"op\":\"refresh\",\"session\":\"n\"}\n"
    at 4s close input
)";

/// A service that shares a window, which closes after two seconds, and that a second later is asked
/// to refresh.
Result shareAndClose(const std::string& lines) {
  TestMac mac(closingDesk + ("    " + lines));
  return serve(mac, {openLine("n", "Notes")}, {{}, {}, false, {}});
}

TEST(releases, let_a_sharing_go_on_when_its_window_closes) {
  const std::string outboxShared =
      R"({"ok":true,"pid":5000000,"sharing":true,"targetPid":41,"windowId":9})";
  for (const char* lines : {"", "macos 14", "macos 15\n    system recording-question never"}) {
    EXPECT_EQ(seen(shareAndClose(lines)), served(0, {testing_support::notesShared, outboxShared}))
        << lines;
  }
}

TEST(releases, may_stop_a_sharing_when_its_window_closes) {
  const Result run = shareAndClose("system closed-window stopped");

  EXPECT_EQ(seen(run),
            served(1, {testing_support::notesShared,
                       R"({"error":"native screen sharing stopped: Error )"
                       R"(Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3815 )"
                       R"(\"Failed to find the capture source\"","ok":false,"sharing":false})"}));
  EXPECT_EQ(run.elapsed, 2'000'000);
}

}  // namespace releases_test
