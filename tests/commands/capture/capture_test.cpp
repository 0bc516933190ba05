#include <gtest/gtest.h>

#include "tests/support/captured.h"
#include "tests/support/inside.h"
#include "tests/support/simulated_run.h"
#include "tests/support/temporary_folder.h"

/// "capture": what it replies, what it asks the system for, and what it refuses.
namespace capture_test {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 1440x900 scale 2
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,130 size 60x20
)";

TEST(capture, writes_a_picture_and_describes_its_geometry) {
  TestMac mac(desk);
  const TemporaryFolder folder;

  const Result run = mac.driver("capture Notes " + folder.path("out.png"));

  EXPECT_EQ(seen(run),
            success(R"({"active":false,"anchor":{"height":600,"id":7,"width":800,"x":100,"y":80},)"
                    R"("name":"Notes","ok":true,"otherDisplayWindows":[],)"
                    R"("rect":{"height":600,"width":800,"x":100,"y":80},"running":true,)"
                    R"("windows":[{"bundle":"com.example.notes","height":600,"layer":0,)"
                    R"("owner":"Notes","title":"Inbox","width":800,"x":100,"y":80}]})"));
  EXPECT_EQ(run.effects, "    0 ms  file " + folder.path("out.png") + "\n");
  EXPECT_EQ(run.elapsed, 0);
  const PictureFile picture = readPicture(folder.path("out.png"));
  EXPECT_EQ(picture.width, 1600);
  EXPECT_EQ(picture.height, 1200);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"out.png"});
}

TEST(capture, asks_for_exactly_the_drawn_windows_on_grey_without_a_cursor) {
  TestMac mac(desk);
  const TemporaryFolder folder;

  mac.driver("capture Notes " + folder.path("out.png"));

  // Content without desktop windows; an including filter of display 1 with window 7; pixels,
  // source and background.
  EXPECT_EQ(callsOf(mac, platform::Function::shareContent).at(0).substr(0, 15), "share.content 1");
  EXPECT_EQ(callsOf(mac, platform::Function::screenshot).at(0).substr(0, 66),
            "share.screenshot [1 1 [7]] [1600 1200 [[100 80 800 600]] [0.5]] ->");
  EXPECT_EQ(callsOf(mac, platform::Function::windows).at(0).substr(0, 23),
            "windowserver.windows 1 ");
}

TEST(capture, of_the_active_application_says_so) {
  TestMac mac(desk);
  const TemporaryFolder folder;

  const Result run = mac.driver("capture com.example.browser " + folder.path("out.png"));

  EXPECT_EQ(seen(run),
            success(Captured{{0, 30, 600, 500},
                             5,
                             {0, 30, 600, 500},
                             {{"Start", {0, 30, 600, 500}, 0, "Browser", "com.example.browser"}},
                             {},
                             "Browser",
                             true}));
}

TEST(capture, has_empty_texts_for_what_is_unknown) {
  TestMac mac(R"(
    app "A tool" pid 41 unnamed unbundled
        window 7 at 100,80 size 80x60
)");
  const TemporaryFolder folder;

  const Result run = mac.driver("capture pid:41 " + folder.path("out.png"));

  EXPECT_EQ(
      seen(run),
      success(Captured{
          {100, 80, 80, 60}, 7, {100, 80, 80, 60}, {{"", {100, 80, 80, 60}, 0, "", ""}}, {}, ""}));
}

TEST(capture, of_an_application_that_does_not_run_is_no_error) {
  TestMac mac(desk);
  const TemporaryFolder folder;

  const Result run = mac.driver("capture Nobody " + folder.path("out.png"));

  EXPECT_EQ(seen(run), success(R"({"ok":true,"running":false})"));
  EXPECT_TRUE(folder.names().empty());
}

TEST(capture, without_a_qualifying_window_has_no_rectangle) {
  for (const char* window : {"", "        window 7 \"Inbox\" at 100,80 size 800x600 off-screen\n",
                             "        window 7 \"Inbox\" at 100,80 size 800x600 not-capturable\n",
                             "        window 7 \"Inbox\" at 100,80 size 39x600\n",
                             "        window 7 \"Inbox\" at 100,80 size 800x39.5\n",
                             "        window 7 \"Inbox\" at 100,80 size 800x600 layer 1000\n",
                             "        window 7 \"Inbox\" at nan,80 size 800x600\n"}) {
    SCOPED_TRACE(window);
    TestMac mac("    app Notes pid 41\n" + std::string(window));
    const TemporaryFolder folder;

    const Result run = mac.driver("capture Notes " + folder.path("out.png"));

    EXPECT_EQ(seen(run), success(R"({"ok":true,"rect":null,"running":true,"windows":[]})"));
    EXPECT_TRUE(folder.names().empty());
  }
}

TEST(capture, of_a_hidden_application_has_no_rectangle) {
  TestMac mac("    app Notes pid 41 hidden\n        window 7 at 1,1 size 90x90\n");

  EXPECT_EQ(seen(mac.driver("capture Notes /nowhere/out.png")),
            success(R"({"ok":true,"rect":null,"running":true,"windows":[]})"));
}

TEST(capture, works_while_the_screen_is_locked) {
  TestMac mac(std::string(desk) + "    session locked\n");
  const TemporaryFolder folder;

  const Result run = mac.driver("capture Notes " + folder.path("out.png"));

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"out.png"});
}

TEST(capture, ignores_further_arguments) {
  TestMac mac(desk);
  const TemporaryFolder folder;

  const Result run = mac.driver("capture Notes " + folder.path("out.png") + " and more");

  EXPECT_EQ(run.output.find("\"ok\":true") != std::string::npos, true);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"out.png"});
}

TEST(capture, without_permission_replies_with_the_systems_description) {
  TestMac mac(std::string(desk) + "    deny screen-recording\n");
  const TemporaryFolder folder;
  folder.write("out.png", "old");

  const Result run = mac.driver("capture Notes " + folder.path("out.png"));

  EXPECT_EQ(seen(run),
            success(R"({"error":"Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain )"
                    R"(Code=-3801 \"The user declined TCCs for application, window, display )"
                    R"(capture\"","ok":false})"));
  EXPECT_EQ(folder.read("out.png"), "old");
}

TEST(capture, replies_with_the_description_of_a_thrown_error) {
  for (const char* fault : {"share.content 1 thrown", "share.screenshot 1 thrown"}) {
    SCOPED_TRACE(fault);
    TestMac mac(desk, {fault});
    const TemporaryFolder folder;
    folder.write("out.png", "old");

    const Result run = mac.driver("capture Notes " + folder.path("out.png"));

    EXPECT_EQ(seen(run),
              success(R"({"error":"Error Domain=Simulated Code=1 \"a fault\"","ok":false})"));
    EXPECT_EQ(folder.read("out.png"), "old");
  }
}

TEST(capture, ends_with_the_service_that_was_named) {
  TestMac mac(desk);

  EXPECT_EQ(seen(mac.driver("capture Notes /nowhere/out.png", {{"CU_CAPTURE_PID", "900"}})),
            failure("native screen sharing stopped; background input is disabled"));
}

TEST(capture, of_a_window_that_goes_before_the_screenshot_is_a_thrown_error) {
  TestMac mac(desk, {"share.screenshot 1 before quit Notes"});
  const TemporaryFolder folder;

  const Result run = mac.driver("capture Notes " + folder.path("out.png"));

  EXPECT_EQ(seen(run),
            success(R"({"error":"Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain )"
                    R"(Code=-3815 \"Failed to find the capture source\"","ok":false})"));
  EXPECT_TRUE(folder.names().empty());
}

}  // namespace capture_test
