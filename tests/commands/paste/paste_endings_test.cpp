#include <gtest/gtest.h>

#include <array>

#include "simulator/rules/pace.h"
#include "tests/support/pasting.h"
#include "tests/support/posted_events.h"

/// Pastes that do not end as usual: the user has clipboard and focus back all the same.
namespace paste_endings_test {

using namespace testing_support;

/// When the events of a paste into Notes are posted, in milliseconds.
constexpr std::array<std::int64_t, 4> times = {40, 52, 64, 76};

std::string joined(std::size_t number) {
  std::string text;
  for (std::size_t i = 0; i < number; ++i) text += (i == 0 ? "" : " ") + std::to_string(times[i]);
  return text;
}

/// Something that happens immediately before the event of this index.
std::string before(std::size_t event, const std::string& happening) {
  return "at " + std::to_string(times[event] * 1000 - 1) + "us " + happening + "\n";
}

const std::string withheld =
    "1 {\"error\":\"the screen locked; input was withheld from the lock screen\",\"locked\":true,"
    "\"ok\":false}\n";
const std::string serviceGone =
    failure("native screen sharing stopped; background input is disabled");

simulator::WindowNumber focusGiven(const TestMac& mac, std::size_t application) {
  return mac.world().applications[application].focusByRecord;
}

TEST(paste_ending, when_the_menu_refuses_gives_the_clipboard_back) {
  TestMac mac(pastingDesk, {"ax.perform 1 error -25200"});

  const Result run = mac.driver("bg-paste-files Mail /a.txt");

  EXPECT_EQ(seen(run), refused("target menu shortcut failed: cmd+v"));
  EXPECT_EQ(run.effects, R"(    0 ms  focus 42/8 give
   40 ms  pasteboard clear
   40 ms  pasteboard write-files "/a.txt"
  340 ms  pasteboard clear
  340 ms  pasteboard write "old"
  390 ms  focus 42/8 take
)");
  EXPECT_EQ(run.elapsed, 430'000);
  EXPECT_EQ(attachedFiles(mac, "Mail"), "");
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(paste_ending, when_the_menu_refuses_keeps_a_newer_copy) {
  for (const int time : {41, 200, 339, 340}) {
    TestMac mac(pastingDeskWith("at " + std::to_string(time) + "ms user copy \"newer\"\n"),
                {"ax.perform 1 error -25200"});
    EXPECT_EQ(seen(mac.driver("bg-paste-files Mail /a.txt")),
              refused("target menu shortcut failed: cmd+v"));
    EXPECT_EQ(clipboard(mac), newerClipboard) << time;
  }
}

TEST(paste_ending, when_the_clipboard_cannot_be_written_posts_nothing) {
  TestMac mac(pastingDesk, {"pasteboard.write-files 1 refused"});

  const Result run = mac.driver("bg-paste-files Notes /a.txt");

  EXPECT_EQ(seen(run), refused("the clipboard could not be written"));
  EXPECT_EQ(postingTimes(mac), "");
  EXPECT_EQ(waits(mac), "40000 300000 50000 40000");
  EXPECT_EQ(run.elapsed, 430'000);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello ");
  EXPECT_EQ(clipboard(mac), usersClipboard);
  EXPECT_EQ(focusGiven(mac, 1), 0U);
}

TEST(paste_ending, in_front_when_the_clipboard_cannot_be_written_gives_it_back) {
  TestMac mac(pastingDesk, {"pasteboard.write-files 1 refused"});

  const Result run = mac.driver("bg-paste-files Browser /a.txt");

  EXPECT_EQ(seen(run), refused("the clipboard could not be written"));
  EXPECT_EQ(run.elapsed, 300'000);
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(paste_ending, when_the_clipboard_takes_nothing_back_says_so) {
  TestMac mac(pastingDesk, {"pasteboard.write 1 refused"});
  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt")),
            success("{\"clipboardRestored\":false,\"ok\":true,\"pid\":41,\"via\":\"background\","
                    "\"window\":7}"));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello /a.txt");
  EXPECT_EQ(clipboard(mac), "");
}

TEST(paste_ending, by_a_dead_service_says_what_became_of_the_clipboard_too) {
  const Environment service = {{"CU_CAPTURE_PID", "900"}};
  TestMac lost(pastingDeskWith(before(1, "end process 900")),
               {"pasteboard.clear 2 before user copy newer"});
  EXPECT_EQ(seen(lost.driver("bg-paste-files Notes /a.txt", service)),
            "1 {\"copyLost\":true,\"error\":\"native screen sharing stopped; background input is "
            "disabled\",\"ok\":false}\n");

  TestMac kept(pastingDeskWith(before(1, "lock")), {"pasteboard.write 1 refused"});
  EXPECT_EQ(seen(kept.driver("bg-paste-files Notes /a.txt", service)),
            "1 {\"clipboardRestored\":false,\"error\":\"the screen locked; input was withheld from "
            "the lock screen\",\"locked\":true,\"ok\":false}\n");
}

TEST(paste_ending, at_any_event_when_the_session_becomes_unusable_withholds_the_rest) {
  for (const char* happening : {"lock", "leave console"}) {
    for (std::size_t event = 0; event < times.size(); ++event) {
      SCOPED_TRACE(before(event, happening));
      TestMac mac(pastingDeskWith(before(event, happening)));

      const Result run = mac.driver("bg-paste-files Notes /a.txt");

      EXPECT_EQ(seen(run), withheld);
      EXPECT_EQ(postingTimes(mac), joined(event));
      // What is not posted is not waited for; the clipboard and the focus are.
      const auto posted = static_cast<std::int64_t>(event);
      EXPECT_EQ(run.elapsed, 430'000 + posted * simulator::waitAfterPost);
      EXPECT_EQ(clipboard(mac), usersClipboard);
      EXPECT_EQ(focusGiven(mac, 1), 0U);
    }
  }
}

TEST(paste_ending, before_the_menu_when_the_screen_locks_presses_nothing) {
  TestMac mac(pastingDesk, {"ax.attribute 3 before lock"});

  const Result run = mac.driver("bg-paste-files Mail /a.txt");

  EXPECT_EQ(seen(run), withheld);
  EXPECT_EQ(run.effects.find("AXPress"), std::string::npos) << run.effects;
  EXPECT_EQ(run.elapsed, 430'000);
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(paste_ending, with_a_lock_after_the_last_event_is_a_success) {
  TestMac mac(pastingDeskWith("at 100ms lock\n"));
  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt")), pastedIntoNotes);
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(paste_ending, at_any_event_when_the_service_dies_gives_all_back) {
  for (std::size_t event = 0; event < times.size(); ++event) {
    SCOPED_TRACE(before(event, "end process 900"));
    TestMac mac(pastingDeskWith(before(event, "end process 900")));

    const Result run = mac.driver("bg-paste-files Notes /a.txt", {{"CU_CAPTURE_PID", "900"}});

    EXPECT_EQ(seen(run), serviceGone);
    EXPECT_EQ(postingTimes(mac), joined(event));
    EXPECT_EQ(clipboard(mac), usersClipboard);
    EXPECT_EQ(focusGiven(mac, 1), 0U);
    EXPECT_EQ(run.elapsed, times[event] * 1000 + 300'000 + 40'000);
  }
}

TEST(paste_ending, when_the_service_dies_keeps_what_the_user_copies_at_any_millisecond) {
  for (int time = 41; time <= 360; ++time) {
    TestMac mac(pastingDeskWith(before(1, "end process 900") + "at " + std::to_string(time) +
                                "ms user copy \"newer\"\n"));
    const Result run = mac.driver("bg-paste-files Notes /a.txt", {{"CU_CAPTURE_PID", "900"}});
    ASSERT_EQ(seen(run), serviceGone) << time;
    ASSERT_EQ(clipboard(mac), newerClipboard) << time;
  }
}

TEST(paste_ending, when_the_service_dies_before_the_menu_presses_nothing) {
  TestMac mac(pastingDesk, {"ax.attribute 4 before end process 900"});

  const Result run = mac.driver("bg-paste-files Mail /a.txt", {{"CU_CAPTURE_PID", "900"}});

  EXPECT_EQ(seen(run), serviceGone);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 42/8 give
   40 ms  pasteboard clear
   40 ms  pasteboard write-files "/a.txt"
   40 ms  happening 900/0 end process 900
  340 ms  pasteboard clear
  340 ms  pasteboard write "old"
  340 ms  focus 42/8 take
)");
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(paste_ending, with_a_service_that_dies_afterwards_is_a_success) {
  TestMac mac(pastingDeskWith("at 100ms end process 900\n"));
  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt", {{"CU_CAPTURE_PID", "900"}})),
            pastedIntoNotes);
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(paste_ending, whenever_the_target_quits_or_hangs_gives_the_clipboard_back) {
  for (const char* happening : {"quit Notes", "hang Notes", "front Notes", "front Mail"}) {
    for (int time = 1; time < 480; time += 3) {
      SCOPED_TRACE(std::string(happening) + " at " + std::to_string(time));
      TestMac mac(pastingDeskWith("at " + std::to_string(time) + "ms " + happening + "\n"));
      const Result run = mac.driver("bg-paste-files Notes /a.txt");
      ASSERT_EQ(run.status, 0);
      ASSERT_EQ(clipboard(mac), usersClipboard);
    }
  }
}

TEST(paste_ending, in_a_target_that_has_come_to_front_leaves_it_its_focus) {
  TestMac mac(pastingDeskWith("at 200ms front Notes\n"));

  const Result run = mac.driver("bg-paste-files Notes /a.txt");

  EXPECT_EQ(seen(run), pastedIntoNotes);
  EXPECT_EQ(run.elapsed, 438'000);
  EXPECT_EQ(run.effects.find("take"), std::string::npos) << run.effects;
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(paste_ending, without_a_reader_gives_the_clipboard_back) {
  TestMac mac(pastingDeskWith("at 100ms close output\n"));
  const Result run = mac.driver("bg-paste-files Notes /a.txt");
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(clipboard(mac), usersClipboard);
  EXPECT_EQ(focusGiven(mac, 1), 0U);
}

TEST(paste_ending, without_events_gives_the_clipboard_back) {
  TestMac mac(pastingDesk, {"quartz.create-keyboard-event 1+ absent"});
  const Result run = mac.driver("bg-paste-files Notes /a.txt");
  EXPECT_EQ(seen(run), pastedIntoNotes);
  EXPECT_EQ(postingTimes(mac), "");
  EXPECT_EQ(run.elapsed, 430'000);
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

}  // namespace paste_endings_test
