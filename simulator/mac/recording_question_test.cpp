#include "simulator/mac/recording_question.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/reactions.h"

namespace simulator {
namespace {

constexpr const char* desk = R"(
    display 1 1440x900 scale 2
    process 300
    app Notes pid 301 frontmost
        window 7 "Inbox" at 100,80 size 800x600
    system recording-question before-capture)";

Mac macOf(std::string_view world) {
  Mac mac;
  mac.world = parseWorld(world);
  return mac;
}

void press(World& world, const std::string& label) {
  Application& asking = world.applications.back();
  react(world, asking, findLabelled(asking, label)->id, false);
}

TEST(recording_question, comes_up_in_front_at_the_first_capture) {
  Mac mac = macOf(desk);
  EXPECT_FALSE(awaitsRecordingAnswer(mac.world));

  EXPECT_FALSE(allowsCapture(mac));
  EXPECT_FALSE(allowsCapture(mac));

  ASSERT_EQ(mac.world.applications.size(), 2U);
  const Application& asking = mac.world.applications.back();
  EXPECT_EQ(asking.pid, 302);
  EXPECT_EQ(mac.world.frontmost, 302);
  EXPECT_TRUE(awaitsRecordingAnswer(mac.world));
  ASSERT_EQ(mac.world.windows.size(), 2U);
  const Window& alert = mac.world.windows.front();
  EXPECT_EQ(alert.number, 8U);
  EXPECT_EQ(alert.frame, (Rect{570, 360, 300, 180}));
  EXPECT_EQ(alert.element, asking.focusedWindow);
  EXPECT_EQ(mac.journal.size(), 1U);
}

TEST(recording_question, is_answered_by_either_button) {
  for (const char* label : {"Allow For One Month", "Open System Settings"}) {
    Mac mac = macOf(desk);
    allowsCapture(mac);
    press(mac.world, label);
    EXPECT_FALSE(awaitsRecordingAnswer(mac.world));
    EXPECT_TRUE(allowsCapture(mac)) << label;
    EXPECT_EQ(mac.world.frontmost, 301);
  }
}

TEST(recording_question, does_not_come_up_without_the_permission_or_by_itself) {
  Mac denied = macOf(std::string(desk) + "\n    deny screen-recording");
  EXPECT_FALSE(allowsCapture(denied));
  EXPECT_EQ(denied.world.applications.size(), 1U);
  EXPECT_TRUE(denied.world.system.asksForRecording);

  Mac never = macOf(std::string(desk) + "\n    system recording-question never");
  EXPECT_TRUE(allowsCapture(never));
  EXPECT_EQ(never.world.applications.size(), 1U);
}

TEST(recording_question, comes_up_where_no_display_is) {
  Mac mac = macOf("display 1 1x1\nsystem recording-question before-capture");
  mac.world.displays.clear();
  EXPECT_FALSE(allowsCapture(mac));
  EXPECT_EQ(mac.world.windows.front().frame, (Rect{-150, -90, 300, 180}));
}

}  // namespace
}  // namespace simulator
