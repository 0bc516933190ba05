#include <gtest/gtest.h>

#include <array>

#include "simulator/rules/pace.h"
#include "tests/support/posted_events.h"
#include "tests/support/posted_keys.h"

/// A chord stops when the session becomes unusable, when the capture service goes and when the
/// target quits, whichever of its events is next; focus is given back in any case.
namespace keys_withheld_test {

using namespace testing_support;

std::string deskWith(const std::string& script) {
  return R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400 value "hello"
)" + script;
}

constexpr const char* chord = "bg-key Notes cmd+shift+alt+ctrl+x";
constexpr std::int64_t firstEvent = 340'000;
constexpr std::int64_t pace = simulator::waitAfterPost;
constexpr std::int64_t wholeChord = 550'000;
const Environment service = {{"CU_CAPTURE_PID", "900"}};

constexpr std::array<const char*, 10> steps = {"down 55", "down 56", "down 58", "down 59", "down 7",
                                               "up 7",    "up 59",   "up 58",   "up 56",   "up 55"};

/// The first events of the chord.
std::string stepsBefore(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += (i == 0 ? "" : ", ") + std::string(steps[i]);
  return text;
}

/// The world's line for what happens right before an event of the chord.
std::string rightBefore(std::size_t event, const std::string& happening) {
  const auto time = firstEvent + static_cast<std::int64_t>(event) * pace - 1;
  return "    at " + std::to_string(time) + "us " + happening + "\n";
}

const std::string typed = success(R"({"ok":true,"pid":41,"via":"background","window":7})");

const std::string withheld =
    "1 {\"error\":\"the screen locked; input was withheld from the lock screen\",\"locked\":true,"
    "\"ok\":false}\n";

const std::string serviceGone =
    failure("native screen sharing stopped; background input is disabled");

std::uint32_t heldFocus(const TestMac& mac) { return mac.world().applications[1].focusByRecord; }

TEST(a_chord, is_withheld_from_each_of_its_events_on_when_the_session_becomes_unusable) {
  for (const char* happening : {"lock", "leave console"}) {
    for (std::size_t event = 0; event < steps.size(); ++event) {
      SCOPED_TRACE(rightBefore(event, happening));
      TestMac mac(deskWith(rightBefore(event, happening)));

      const Result run = mac.driver(chord);

      EXPECT_EQ(seen(run), withheld);
      EXPECT_EQ(keySteps(mac), stepsBefore(event));
      const auto missing = static_cast<std::int64_t>(steps.size() - event);
      EXPECT_EQ(run.elapsed, wholeChord - missing * pace);
      EXPECT_EQ(heldFocus(mac), 0U);
    }
  }
}

TEST(a_chord, of_which_one_event_falls_into_a_lock_goes_no_further) {
  for (std::size_t event = 0; event < steps.size(); ++event) {
    const std::string fault = "quartz.post " + std::to_string(event + 1) + " before lock";
    SCOPED_TRACE(fault);
    TestMac mac(deskWith(""), {fault});

    const Result run = mac.driver(chord);

    // The lock that comes with the last event is found by no check any more.
    EXPECT_EQ(seen(run), event + 1 < steps.size() ? withheld : typed);
    EXPECT_EQ(keySteps(mac), stepsBefore(event + 1));
    EXPECT_EQ(heldFocus(mac), 0U);
  }
}

TEST(a_chord, that_was_complete_before_a_lock_is_a_success) {
  TestMac mac(deskWith(rightBefore(steps.size(), "lock")));

  const Result run = mac.driver(chord);

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.elapsed, wholeChord);
  EXPECT_EQ(heldFocus(mac), 0U);
}

TEST(a_chord, withheld_in_part_is_a_refusal_even_when_the_screen_is_unlocked_again) {
  TestMac mac(deskWith("    at 363ms lock\n    at 375ms unlock\n"));

  const Result run = mac.driver(chord);

  EXPECT_EQ(seen(run), withheld);
  // The events after the lock are skipped without a pause, so that it outlasts the whole chord.
  EXPECT_EQ(keySteps(mac), stepsBefore(2));
  EXPECT_EQ(run.elapsed, wholeChord - 8 * pace);
}

TEST(a_chord, of_which_some_checks_find_a_lock_posts_the_other_events) {
  // The checks of the dispatcher and of the frame come first; those of the events follow.
  for (std::size_t event = 0; event < steps.size(); ++event) {
    TestMac mac(deskWith(""),
                {"windowserver.session " + std::to_string(event + 3) + " before lock",
                 "windowserver.session " + std::to_string(event + 4) + " before unlock"});

    const Result run = mac.driver(chord);

    EXPECT_EQ(seen(run), withheld);
    std::string others;
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (i != event) others += (others.empty() ? "" : ", ") + std::string(steps[i]);
    }
    EXPECT_EQ(keySteps(mac), others);
    EXPECT_EQ(run.elapsed, wholeChord - pace);
  }
}

TEST(a_chord, ends_at_each_of_its_events_when_the_capture_service_goes) {
  for (std::size_t event = 0; event < steps.size(); ++event) {
    SCOPED_TRACE(event);
    TestMac mac(deskWith(rightBefore(event, "end process 900")));

    const Result run = mac.driver(chord, service);

    EXPECT_EQ(seen(run), serviceGone);
    EXPECT_EQ(keySteps(mac), stepsBefore(event));
    EXPECT_EQ(run.elapsed, firstEvent + static_cast<std::int64_t>(event) * pace + 40'000);
    EXPECT_EQ(heldFocus(mac), 0U);
  }
}

TEST(a_chord, that_was_complete_before_the_capture_service_went_is_a_success) {
  TestMac mac(deskWith(rightBefore(steps.size(), "end process 900")));
  EXPECT_EQ(seen(mac.driver(chord, service)), typed);
}

TEST(a_chord, ended_by_the_capture_services_end_leaves_focus_that_is_held) {
  TestMac mac(deskWith("    at 299ms end process 900\n"));
  mac.desktop().mac().world.applications[1].focusByRecord = 7;

  const Result run =
      mac.driver("bg-key Notes a", {{"CU_CAPTURE_PID", "900"}, {"CU_FOCUS_PID", "41"}});

  EXPECT_EQ(seen(run), serviceGone);
  EXPECT_EQ(heldFocus(mac), 7U);
}

TEST(a_chord, into_a_target_that_quits_is_lost_and_ends_as_it_would) {
  for (std::size_t event = 0; event < steps.size(); ++event) {
    SCOPED_TRACE(event);
    TestMac mac(deskWith(rightBefore(event, "quit Notes")));

    const Result run = mac.driver(chord);

    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(keySteps(mac), stepsBefore(steps.size()));
    EXPECT_EQ(run.elapsed, wholeChord - 40'000);  // nobody is left to take focus from
  }
}

TEST(a_chord, into_a_target_that_hangs_is_posted_whole) {
  constexpr std::int64_t timeOut = 6'000'000;
  for (std::size_t event = 0; event < steps.size(); ++event) {
    TestMac mac(deskWith(rightBefore(event, "hang Notes")));
    const Result run = mac.driver(chord);
    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(keySteps(mac), stepsBefore(steps.size()));
    // Before the first event the application is asked for its key window and its menus.
    EXPECT_EQ(run.elapsed, wholeChord + (event == 0 ? 2 * timeOut : 0));
  }
}

TEST(a_chord, into_a_target_that_comes_to_front_keeps_its_focus) {
  for (std::size_t event = 0; event <= steps.size(); ++event) {
    SCOPED_TRACE(event);
    TestMac mac(deskWith(rightBefore(event, "front Notes")));

    const Result run = mac.driver(chord);

    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(keySteps(mac), stepsBefore(steps.size()));
    EXPECT_EQ(run.effects.find("take"), std::string::npos);
    EXPECT_EQ(run.elapsed, wholeChord - 40'000);
  }
}

TEST(keys, are_withheld_while_the_session_is_unusable_from_the_start) {
  for (const char* session : {"locked", "off-console", "locked off-console"}) {
    for (const char* command : {"bg-key Notes a", "bg-key", "bg-type Notes a", "bg-type"}) {
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

TEST(keys, are_refused_when_the_session_becomes_unusable_right_after_the_first_check) {
  for (const char* happening : {"lock", "leave console"}) {
    for (const char* command : {"bg-key Notes a", "bg-type Notes a", "bg-key Gone a"}) {
      SCOPED_TRACE(command);
      TestMac mac(deskWith(""), {"windowserver.session 2 before " + std::string(happening)});

      const Result run = mac.driver(command);

      EXPECT_EQ(
          seen(run),
          success(R"({"error":"the Mac is locked or not on console","locked":true,"ok":false})"));
      EXPECT_EQ(run.effects.find("post"), std::string::npos);
      EXPECT_EQ(run.elapsed, 0);
    }
  }
}

TEST(keys, are_typed_when_nothing_is_known_of_the_session) {
  for (const char* session : {"unreadable", "without-console-key"}) {
    TestMac mac(deskWith("    session " + std::string(session) + "\n"));
    EXPECT_EQ(seen(mac.driver("bg-key Notes a")), typed);
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "helloa");
  }
}

TEST(keys, are_refused_without_the_capture_service_before_anything_else) {
  for (const char* command : {"bg-key Notes a", "bg-key", "bg-type Notes a"}) {
    TestMac mac(deskWith(""));
    const Result run = mac.driver(command, {{"CU_CAPTURE_PID", "901"}});
    EXPECT_EQ(seen(run), serviceGone);
    EXPECT_EQ(run.elapsed, 0);
  }
}

}  // namespace keys_withheld_test
