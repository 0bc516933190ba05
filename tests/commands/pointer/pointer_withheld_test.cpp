#include <gtest/gtest.h>

#include <array>

#include "simulator/rules/pace.h"
#include "tests/support/posted_events.h"
#include "tests/support/simulated_run.h"

/// Pointer input stops when the session becomes unusable and when the capture service goes.
namespace pointer_withheld_test {

using namespace testing_support;

/// The button without effect is at 130,95 of Notes, and at 1010,325 of Chat. More lines may follow.
std::string deskWith(const std::string& script) {
  return R"(
    display 1 1440x900
    process 900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Still" at 120,90 size 60x20
    app Chat pid 42 chromium
        window 9 "Chat" at 1000,300 size 250x150
            AXButton "Still" at 1005,320 size 60x20
)" + script;
}

/// When the events of one click are posted, in milliseconds.
constexpr std::array<std::int64_t, 6> times = {40, 67, 80, 192, 219, 232};
constexpr std::int64_t withoutChange = 984'000;
constexpr std::int64_t pace = simulator::waitAfterPost;

std::string joined(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += (i == 0 ? "" : " ") + std::to_string(times[i]);
  return text;
}

const std::string withheld =
    "1 {\"error\":\"the screen locked; input was withheld from the lock screen\",\"locked\":true,"
    "\"ok\":false}\n";

const std::string serviceGone =
    failure("native screen sharing stopped; background input is disabled");

TEST(pointer_withheld, from_each_event_of_a_click_on_when_the_session_becomes_unusable) {
  for (const char* happening : {"lock", "leave console"}) {
    for (std::size_t event = 0; event < times.size(); ++event) {
      const auto moment = static_cast<std::int64_t>(times[event]) * 1000 - 1;
      const std::string script = "    at " + std::to_string(moment) + "us " + happening + "\n";
      SCOPED_TRACE(script);
      TestMac mac(deskWith(script));

      const Result run = mac.driver("bg-click Notes 130 95");

      EXPECT_EQ(seen(run), withheld);
      EXPECT_EQ(postingTimes(mac), joined(event));
      // The delays between events stay, the pauses after those that were not posted do not.
      const auto missing = static_cast<std::int64_t>(times.size() - event);
      EXPECT_EQ(run.elapsed, withoutChange - missing * pace);
      EXPECT_EQ(mac.world().applications[1].focusByRecord, 0U);
    }
  }
}

TEST(pointer_withheld, from_both_routes_of_a_click_into_chromium) {
  // Each of the priming events takes both routes, each of the others one.
  constexpr std::array<const char*, 6> posted = {"",
                                                 "40 40",
                                                 "40 40 67 67",
                                                 "40 40 67 67 80 80",
                                                 "40 40 67 67 80 80 192",
                                                 "40 40 67 67 80 80 192 219"};
  for (std::size_t event = 0; event < times.size(); ++event) {
    const std::string time = "    at " + std::to_string(times[event] * 1000 - 1) + "us ";
    SCOPED_TRACE(time);
    TestMac locked(deskWith(time + "lock\n"));
    TestMac ended(deskWith(time + "end process 900\n"));

    EXPECT_EQ(seen(locked.driver("bg-click Chat 1010 325")), withheld);
    EXPECT_EQ(seen(ended.driver("bg-click Chat 1010 325", {{"CU_CAPTURE_PID", "900"}})),
              serviceGone);
    EXPECT_EQ(postingTimes(locked), posted[event]);
    EXPECT_EQ(postingTimes(ended), posted[event]);
  }
}

TEST(pointer_withheld, from_a_click_that_was_complete_is_nothing) {
  TestMac mac(deskWith("    at 240ms lock\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), success(R"({"changed":false,"ok":true,"via":"background","window":7})"));
  EXPECT_EQ(postingTimes(mac), joined(6));
}

TEST(pointer_withheld, once_is_a_refusal_even_when_the_screen_is_unlocked_again) {
  TestMac mac(deskWith("    at 60ms lock\n    at 90ms unlock\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), withheld);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved -1,-1 private: priming
   60 ms  happening lock
   90 ms  happening unlock
  168 ms  post 41/7 moved 130,95 private LOST: the priming events did not come first in its click group
  195 ms  post 41/7 left-down 130,95 private LOST: the priming events did not come first in its click group
  208 ms  post 41/7 left-up 130,95 private LOST: the priming events did not come first in its click group
  320 ms  focus 41/7 take
)");
}

TEST(pointer_withheld, from_scrolls_and_moves) {
  for (const char* command : {"bg-scroll Notes 130 95 0 -3", "bg-move Notes 130 95",
                              "bg-scroll Chat 1010 325 0 -3", "bg-move Chat 1010 325"}) {
    SCOPED_TRACE(command);
    TestMac mac(deskWith("    at 39ms lock\n"));

    const Result run = mac.driver(command);

    EXPECT_EQ(seen(run), withheld);
    EXPECT_EQ(postingTimes(mac), "");
    EXPECT_EQ(run.elapsed, 730'000);
  }
}

TEST(pointer_withheld, while_the_session_is_unusable_from_the_start) {
  for (const char* session : {"locked", "off-console"}) {
    for (const char* command : {"bg-click", "bg-click Notes 130 95", "bg-scroll Notes 1 2 3 4",
                                "bg-move Notes 1 2", "bg-drag Notes 1 2 3 4"}) {
      SCOPED_TRACE(command);
      TestMac mac(deskWith("    session " + std::string(session) + "\n"));

      const Result run = mac.driver(command);

      EXPECT_EQ(seen(run),
                failure("the Mac is locked or not on console; background input is unavailable"));
      EXPECT_EQ(run.effects, "");
      EXPECT_EQ(run.elapsed, 0);
    }
  }
}

TEST(pointer_withheld, when_the_session_becomes_unusable_right_after_the_first_check) {
  for (const char* fault :
       {"windowserver.session 2 before lock", "windowserver.session 2 before leave console"}) {
    SCOPED_TRACE(fault);
    TestMac mac(deskWith(""), {fault});

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(
        seen(run),
        success(R"({"error":"the Mac is locked or not on console","locked":true,"ok":false})"));
    EXPECT_EQ(postingTimes(mac), "");
    EXPECT_EQ(run.elapsed, 0);
  }
}

TEST(pointer_withheld, never_when_the_session_cannot_be_read) {
  TestMac mac(deskWith("    session unreadable\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), success(R"({"changed":false,"ok":true,"via":"background","window":7})"));
}

TEST(pointer_after_the_services_death, ends_before_the_next_event_of_a_click) {
  for (std::size_t event = 0; event < times.size(); ++event) {
    const auto moment = static_cast<std::int64_t>(times[event]) * 1000 - 1;
    const std::string script = "    at " + std::to_string(moment) + "us end process 900\n";
    SCOPED_TRACE(script);
    TestMac mac(deskWith(script));

    const Result run = mac.driver("bg-click Notes 130 95", {{"CU_CAPTURE_PID", "900"}});

    EXPECT_EQ(seen(run), serviceGone);
    EXPECT_EQ(postingTimes(mac), joined(event));
    // Focus is taken back at once, before the reply.
    EXPECT_EQ(run.elapsed, times[event] * 1000 + 40'000);
    EXPECT_EQ(mac.world().applications[1].focusByRecord, 0U);
  }
}

TEST(pointer_after_the_services_death, ends_before_the_event_of_a_scroll_or_move) {
  for (const char* command : {"bg-scroll Notes 130 95 0 -3", "bg-move Chat 1010 325"}) {
    SCOPED_TRACE(command);
    TestMac mac(deskWith("    at 39ms end process 900\n"));

    const Result run = mac.driver(command, {{"CU_CAPTURE_PID", "900"}});

    EXPECT_EQ(seen(run), serviceGone);
    EXPECT_EQ(postingTimes(mac), "");
    EXPECT_EQ(run.elapsed, 80'000);
  }
}

TEST(pointer_after_the_services_death, a_click_that_was_complete_ends_as_usual) {
  TestMac mac(deskWith("    at 233ms end process 900\n"));

  const Result run = mac.driver("bg-click Notes 130 95", {{"CU_CAPTURE_PID", "900"}});

  EXPECT_EQ(seen(run), success(R"({"changed":false,"ok":true,"via":"background","window":7})"));
}

TEST(pointer_after_the_services_death, a_target_in_front_or_held_keeps_its_focus) {
  TestMac front(deskWith("    at 0ms front Notes\n    at 20ms end process 900\n"));
  TestMac held(deskWith("    at 20ms end process 900\n"));

  const Result inFront = front.driver("bg-click Notes 130 95", {{"CU_CAPTURE_PID", "900"}});
  const Result whileHeld =
      held.driver("bg-click Notes 130 95", {{"CU_CAPTURE_PID", "900"}, {"CU_FOCUS_PID", "41"}});

  EXPECT_EQ(seen(inFront), serviceGone);
  EXPECT_EQ(seen(whileHeld), serviceGone);
  EXPECT_EQ(inFront.elapsed, 27'000);
  EXPECT_EQ(whileHeld.elapsed, 27'000);
}

TEST(pointer_after_the_services_death, a_lock_does_not_hide_it) {
  TestMac mac(deskWith("    at 50ms lock\n    at 60ms end process 900\n"));

  const Result run = mac.driver("bg-click Notes 130 95", {{"CU_CAPTURE_PID", "900"}});

  EXPECT_EQ(seen(run), serviceGone);
  EXPECT_EQ(postingTimes(mac), "40");
}

}  // namespace pointer_withheld_test
