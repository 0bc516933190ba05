#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/simulated_run.h"
#include "tests/support/temporary_folder.h"

/// The exact seam calls of the commands of the capture group: nothing is asked twice without need.
namespace {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 1440x900 scale 2
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXCheckBox "Done" at 120,90 size 60x20
            AXTextArea "Body" at 120,130 size 700x400 value "hello" focused
    app Chat pid 42 bundle com.example.chat chromium
        window 9 "Chat" at 1000,300 size 250x150
            AXCheckBox "Done" at 1010,310 size 40x20
    app Input pid 50 bundle com.example.input accessory
        window 12 at 120,300 size 60x30 layer 3
)";

/// CU_WINDOW, the global source, the guard's five start-up values.
const std::string startUp = R"(
    process.environment quartz.create-source
    process.environment process.environment process.environment process.environment
    process.full-user-name process.given-name
)";

const std::string liveness = " process.environment process.null-signal ";
const std::string foreground = " private.front-process private.process-pid ";

/// What every "bg-" command asks first: the session and the foreground.
const std::string inputContext =
    " windowserver.session loader.open-library loader.find-symbol loader.find-symbol " + foreground;

const std::string appByName = " workspace.applications-with-bundle workspace.applications ";
const std::string image = " share.content share.screenshot image.pixels ";

/// SkyLight, and the setter of the window location, which CoreGraphics exports.
const std::string windowLocation =
    " loader.open-library loader.find-symbol loader.find-loaded-symbol ";
const std::string twoSymbols = " loader.find-symbol loader.find-symbol ";

const std::string focusRecord = " private.process-for-pid private.post-record loop.sleep ";

/// Giving focus: in front? held? The first record looks its two entry points up.
const std::string giveFocus = foreground + " process.environment " + twoSymbols + focusRecord;

/// The pause, held? in front? and the record.
const std::string takeFocus = " loop.sleep process.environment " + foreground + focusRecord;

const std::string oneRound = " loop.sleep " + image;

/// Creation, the checks of the posting primitive, the posting itself and its pause.
std::string event(const std::string& posts, const std::string& created = "mouse") {
  return " quartz.create-" + created + "-event " + liveness + " windowserver.session " + posts +
         " loop.sleep ";
}

/// An event of a click with a delay after it.
std::string slowEvent(const std::string& posts) { return event(posts) + " loop.sleep "; }

std::string oneALine(const std::string& text) {
  std::istringstream words(text);
  std::string lines;
  for (std::string word; words >> word;) lines += word + "\n";
  return lines;
}

/// The calls of a run with a capture service.
std::string callsOf(const std::string& command) {
  TestMac mac(desk);
  std::string lines;
  for (const std::string& call : mac.driver(command, {{"CU_CAPTURE_PID", "900"}}).calls) {
    lines += call + "\n";
  }
  return lines;
}

TEST(seam_calls, of_a_click_into_appkit) {
  const std::string posted = "private.post";

  EXPECT_EQ(callsOf("bg-click Notes 130 95"),
            oneALine(startUp + liveness + inputContext + "windowserver.session" + appByName +
                     "windowserver.windows" + image + "ax.attributes ax.attributes" +
                     windowLocation + giveFocus + "streams.list-directory" + twoSymbols +
                     "quartz.create-source loop.uptime" + slowEvent(posted) + slowEvent(posted) +
                     slowEvent(posted) + slowEvent(posted) + slowEvent(posted) + event(posted) +
                     takeFocus + oneRound));
}

TEST(seam_calls, of_a_click_into_chromium) {
  const std::string both = "private.post quartz.post";
  const std::string posted = "quartz.post";

  EXPECT_EQ(callsOf("bg-click com.example.chat 1020 320"),
            oneALine(startUp + liveness + inputContext +
                     "windowserver.session workspace.applications-with-bundle "
                     "windowserver.windows" +
                     image + "ax.attributes" + windowLocation + giveFocus +
                     "streams.list-directory streams.file-exists" + twoSymbols +
                     "quartz.create-source loop.uptime" + slowEvent(both) + slowEvent(both) +
                     slowEvent(both) + slowEvent(posted) + slowEvent(posted) + event(posted) +
                     takeFocus + oneRound));
}

TEST(seam_calls, of_a_click_without_effect_add_two_rounds_and_the_focus) {
  const std::string posted = "private.post";
  const std::string fullRound = oneRound + "ax.attributes ax.attributes";

  EXPECT_EQ(
      callsOf("bg-click Notes 130 600 left 2"),
      oneALine(startUp + liveness + inputContext + "windowserver.session" + appByName +
               "windowserver.windows" + image + "ax.attributes ax.attributes" + windowLocation +
               giveFocus + "streams.list-directory" + twoSymbols +
               "quartz.create-source loop.uptime" + slowEvent(posted) + slowEvent(posted) +
               slowEvent(posted) + slowEvent(posted) + slowEvent(posted) + slowEvent(posted) +
               slowEvent(posted) + event(posted) + takeFocus + fullRound + fullRound + fullRound));
}

TEST(seam_calls, of_a_scroll) {
  EXPECT_EQ(callsOf("bg-scroll Notes 130 95 0 1"),
            oneALine(startUp + liveness + inputContext + "windowserver.session" + appByName +
                     "windowserver.windows" + image + "ax.attributes ax.attributes" +
                     windowLocation + twoSymbols + "streams.list-directory" + giveFocus +
                     "loop.uptime" + event("quartz.post", "scroll") + takeFocus + oneRound));
}

TEST(seam_calls, of_a_move) {
  EXPECT_EQ(callsOf("bg-move pid:41 130 95"),
            oneALine(startUp + liveness + inputContext +
                     "windowserver.session workspace.application windowserver.windows" + image +
                     "ax.attributes ax.attributes" + windowLocation + twoSymbols +
                     "streams.list-directory" + giveFocus + "loop.uptime" + event("private.post") +
                     takeFocus + oneRound));
}

TEST(seam_calls, of_a_drag_end_with_the_kind_of_application) {
  EXPECT_EQ(callsOf("bg-drag Notes 130 95 140 95"),
            oneALine(startUp + liveness + inputContext + "windowserver.session" + appByName +
                     "windowserver.windows" + image + "ax.attributes ax.attributes" +
                     windowLocation + twoSymbols + "streams.list-directory"));
}

TEST(seam_calls, of_a_capture) {
  const TemporaryFolder folder;

  EXPECT_EQ(callsOf("capture Notes " + folder.path("out.png")),
            oneALine(startUp + liveness + appByName + R"(
    share.content windowserver.windows workspace.activation-policy windowserver.display-mode
    share.screenshot image.png streams.replace-file
)"));
}

TEST(seam_calls, of_a_capture_without_an_application_are_one_query) {
  EXPECT_EQ(callsOf("capture pid:99 /nowhere/out.png"),
            oneALine(startUp + liveness + "workspace.application"));
}

TEST(seam_calls, of_a_probe) {
  EXPECT_EQ(callsOf("capture-probe"),
            oneALine(startUp + liveness + "share.content share.screenshot"));
}

TEST(seam_calls, of_a_focus_hold_are_its_preconditions) {
  EXPECT_EQ(callsOf("bg-focus-hold Notes"), oneALine(startUp + liveness + inputContext));
}

}  // namespace
