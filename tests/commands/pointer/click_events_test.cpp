#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/posted_events.h"
#include "tests/support/simulated_run.h"

/// Every event of a click, field by field.
namespace click_events_test {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 1440x900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXCheckBox "Done" at 120,90 size 60x20 press: toggle right: toggle
    app Chat pid 42 chromium
        window 9 "Chat" at -300,20 size 250x150
            AXCheckBox "Done" at -280,30 size 40x20 press: toggle right: toggle
)";

TEST(click_events, of_a_left_click_into_appkit) {
  TestMac mac(desk);

  mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(postedEvents(mac),
            R"(   40 ms private to 41: type 5 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
   67 ms private to 41: type 1 at -1,-1, in window -1,-1, button 0, source, no flags
         0=1 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
   80 ms private to 41: type 2 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  192 ms private to 41: type 5 at 130,95, in window 130,95, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  219 ms private to 41: type 1 at 130,95, in window 130,95, button 0, source, no flags
         0=3 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  232 ms private to 41: type 2 at 130,95, in window 130,95, button 0, source, no flags
         0=3 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
)");
}

TEST(click_events, of_a_right_click_into_appkit) {
  TestMac mac(desk);

  mac.driver("bg-click Notes 130 95 right");

  EXPECT_EQ(postedEvents(mac),
            R"(   40 ms private to 41: type 5 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
   67 ms private to 41: type 1 at -1,-1, in window -1,-1, button 0, source, no flags
         0=1 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
   80 ms private to 41: type 2 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  192 ms private to 41: type 5 at 130,95, in window 130,95, button 1, source, no flags
         0=2 1=0 3=1 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  219 ms private to 41: type 3 at 130,95, in window 130,95, button 1, source, no flags
         0=3 1=1 3=1 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  232 ms private to 41: type 4 at 130,95, in window 130,95, button 1, source, no flags
         0=3 1=1 3=1 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
)");
}

TEST(click_events, of_a_double_click_into_appkit) {
  TestMac mac(desk);

  mac.driver("bg-click Notes 130 95 left 2");

  EXPECT_EQ(postedEvents(mac),
            R"(   40 ms private to 41: type 5 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
   67 ms private to 41: type 1 at -1,-1, in window -1,-1, button 0, source, no flags
         0=1 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
   80 ms private to 41: type 2 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  192 ms private to 41: type 5 at 130,95, in window 130,95, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  219 ms private to 41: type 1 at 130,95, in window 130,95, button 0, source, no flags
         0=3 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  232 ms private to 41: type 2 at 130,95, in window 130,95, button 0, source, no flags
         0=3 1=1 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  324 ms private to 41: type 1 at 130,95, in window 130,95, button 0, source, no flags
         0=3 1=2 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
  337 ms private to 41: type 2 at 130,95, in window 130,95, button 0, source, no flags
         0=3 1=2 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
)");
}

TEST(click_events, of_a_left_click_into_chromium) {
  TestMac mac(desk);

  mac.driver("bg-click Chat -270 35");

  EXPECT_EQ(postedEvents(mac),
            R"(   40 ms private to 42: type 5 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   40 ms public to 42: type 5 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   67 ms private to 42: type 1 at -1,-1, in window -1,-1, button 0, source, no flags
         0=1 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   67 ms public to 42: type 1 at -1,-1, in window -1,-1, button 0, source, no flags
         0=1 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   80 ms private to 42: type 2 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   80 ms public to 42: type 2 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
  192 ms public to 42: type 5 at -270,35, in window 30,15, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
  219 ms public to 42: type 1 at -270,35, in window 30,15, button 0, source, no flags
         0=3 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
  232 ms public to 42: type 2 at -270,35, in window 30,15, button 0, source, no flags
         0=3 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
)");
}

TEST(click_events, of_a_right_double_click_into_chromium) {
  TestMac mac(desk);

  mac.driver("bg-click Chat -270.5 35.25 right 2");

  EXPECT_EQ(postedEvents(mac),
            R"(   40 ms private to 42: type 5 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   40 ms public to 42: type 5 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=0 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   67 ms private to 42: type 1 at -1,-1, in window -1,-1, button 0, source, no flags
         0=1 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   67 ms public to 42: type 1 at -1,-1, in window -1,-1, button 0, source, no flags
         0=1 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   80 ms private to 42: type 2 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
   80 ms public to 42: type 2 at -1,-1, in window -1,-1, button 0, source, no flags
         0=2 1=1 3=0 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
  192 ms private to 42: type 5 at -270.5,35.25, in window 29.5,15.25, button 1, source, no flags
         0=2 1=0 3=1 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
  219 ms private to 42: type 3 at -270.5,35.25, in window 29.5,15.25, button 1, source, no flags
         0=3 1=1 3=1 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
  232 ms private to 42: type 4 at -270.5,35.25, in window 29.5,15.25, button 1, source, no flags
         0=3 1=1 3=1 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
  324 ms private to 42: type 3 at -270.5,35.25, in window 29.5,15.25, button 1, source, no flags
         0=3 1=2 3=1 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
  337 ms private to 42: type 4 at -270.5,35.25, in window 29.5,15.25, button 1, source, no flags
         0=3 1=2 3=1 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
)");
}

TEST(click_events, have_a_group_that_is_the_uptime_within_its_second) {
  TestMac mac(desk);
  mac.desktop().advanceTo(2'960'001);

  mac.driver("bg-click Notes 130 95");

  const std::string events = postedEvents(mac);
  EXPECT_EQ(
      events.substr(0, events.find("1515475542")),
      "3000.001 ms private to 41: type 5 at -1,-1, in window -1,-1, button 0, source, no flags\n"
      "         0=2 1=0 3=0 7=3 40=41 51=7 58=1000 91=7 92=7 | 42=");
}

TEST(click_events, that_cannot_be_created_are_skipped_without_their_delay) {
  TestMac mac(desk, {"quartz.create-mouse-event 3 absent", "quartz.create-mouse-event 6 absent"});

  mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(postingTimes(mac), "40 67 80 107");
  EXPECT_EQ(
      waits(mac),
      "40000 12000 15000 12000 1000 12000 15000 12000 1000 100000 40000 200000 200000 200000");
}

TEST(click_events, that_cannot_be_created_are_nothing_to_ask_for) {
  const auto questions = [](const std::vector<std::string>& faults) {
    TestMac mac(desk, faults);
    const Result run = mac.driver("bg-click Notes 130 95");
    return std::count(run.calls.begin(), run.calls.end(), "windowserver.session");
  };
  EXPECT_EQ(questions({"quartz.create-mouse-event 1 absent"}), questions({}) - 1);
}

TEST(click_events, are_posted_without_a_source_when_the_system_gives_none) {
  TestMac mac(desk, {"quartz.create-source 2 absent"});

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), success(R"({"changed":true,"ok":true,"via":"background","window":7})"));
  EXPECT_EQ(postedEvents(mac).find(", source"), std::string::npos);
}

}  // namespace click_events_test
