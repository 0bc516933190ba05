#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "guard/guard_tap.h"
#include "main/globals.h"
#include "tests/support/channels.h"
#include "tests/support/guarded.h"
#include "tests/support/inside.h"

// A guard whose tap does not work watches nobody, and one whose process has lost the permission
// holds up all that the user does. Such a guard does not start, or locks and goes.

namespace {

using testing_support::deskWith;
using testing_support::endedBy;
using testing_support::failure;
using testing_support::guard;
using testing_support::guardedDesk;
using testing_support::guardSays;
using testing_support::Mode;
using testing_support::Result;
using testing_support::runInside;
using testing_support::seen;
using testing_support::TestMac;

/// That desk for a minute: then a guard that would watch for ever ends with its agent.
std::string deskForAMinute(std::vector<std::string> happenings) {
  happenings.emplace_back("60s close input");
  return deskWith(happenings);
}

const std::string refusal =
    failure("cannot watch for the user's return: accessibility permission is missing");

TEST(guard_tap, that_would_see_no_keys_counts_as_none) {
  EXPECT_EQ(seen(guard("deny keys-in-taps\n" + std::string(guardedDesk))), refusal);
}

TEST(guard_tap, that_cannot_be_enabled_counts_as_none) {
  EXPECT_EQ(seen(guard(guardedDesk, {}, {"tap.enable 1 refused"})), refusal);
  EXPECT_EQ(seen(guard(guardedDesk, {}, {"tap.is-enabled 1 refused"})), refusal);
}

TEST(guard_tap, that_is_not_answered_for_at_first_fails_the_guard) {
  for (const char* question : {"tap.can-be-made 1", "tap.is-enabled 1"}) {
    const Result run = guard(deskForAMinute({}), {}, {std::string(question) + " hang"});
    EXPECT_EQ(seen(run), refusal) << question;
    EXPECT_EQ(run.elapsed, 2'100'000) << question;
  }
}

TEST(guard_tap, that_holds_all_input_from_the_start_lets_it_go_within_three_seconds) {
  for (const auto& [reader, end] :
       {std::pair("2s user key b", 2'100'000), std::pair("2s stall output", 2'350'000)}) {
    TestMac mac(deskForAMinute({"100ms withdraw accessibility", "200ms user key a", reader}),
                {"tap.is-enabled 1 hang"}, Mode::direct);
    EXPECT_EQ(guard(mac).elapsed, end) << reader;
    EXPECT_TRUE(mac.desktop().mac().tapLine.waiting.empty()) << reader;
    EXPECT_FALSE(mac.world().session.locked.value_or(false)) << reader;
  }
}

TEST(guard_tap, that_is_answered_for_once_the_guard_is_given_up_begins_nothing) {
  TestMac mac(guardedDesk, {}, Mode::direct);
  bool hasBegun = false;
  const Result run = runInside(mac, [&] {
    driver::globals().guardWatch = driver::GuardWatch::failed;
    driver::watchForReturn();
    hasBegun = true;
  });
  EXPECT_EQ(run.status, testing_support::stillRunning);
  EXPECT_FALSE(hasBegun);
}

TEST(guard_tap, that_is_late_to_be_answered_for_watches_all_the_same) {
  const Result run =
      guard(deskWith({"3s user key a"}), {}, {"tap.can-be-made 1 late", "tap.is-enabled 1 late"});
  EXPECT_EQ(seen(run), guardSays({endedBy("user")}));
  EXPECT_EQ(run.elapsed, 3'500'000);
}

TEST(guard_tap, that_is_late_to_be_answered_for_may_be_slow_to_answer_for) {
  const Result run =
      guard(deskWith({"5s user key a"}), {},
            {"tap.can-be-made 1 late", "tap.is-enabled 1 late", "ax.trusted 1 late"});
  EXPECT_EQ(seen(run), guardSays({endedBy("user")}));
  EXPECT_EQ(run.elapsed, 5'500'000);
}

TEST(guard_tap, that_is_late_to_be_answered_for_is_looked_after_at_once) {
  const Result run =
      guard(deskForAMinute({}), {},
            {"tap.can-be-made 1 late", "tap.is-enabled 1 late", "ax.trusted 1 hang"});
  EXPECT_EQ(seen(run), guardSays({endedBy("loop")}));
  EXPECT_EQ(run.elapsed, 3'600'000);
}

TEST(guard_tap, that_fails_unheard_locks_at_the_next_look) {
  for (const auto& [happening, end] :
       {std::pair("silence taps", 2'600'000), std::pair("invalidate taps", 2'600'000),
        std::pair("withdraw accessibility", 2'500'000)}) {
    const Result run = guard(deskForAMinute({std::string("1200ms ") + happening}));
    EXPECT_EQ(seen(run), guardSays({endedBy("loop")})) << happening;
    EXPECT_EQ(run.elapsed, end) << happening;
  }
}

TEST(guard_tap, whose_permission_has_gone_lets_the_users_input_go_within_three_seconds) {
  TestMac mac(deskForAMinute({"1100ms withdraw accessibility", "1100ms user key a",
                              "1500ms user click 300,300"}),
              {}, Mode::direct);
  const Result run = guard(mac);
  EXPECT_EQ(seen(run), guardSays({endedBy("loop")}));
  EXPECT_EQ(run.elapsed, 2'500'000);
  EXPECT_TRUE(mac.desktop().mac().tapLine.waiting.empty());
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
}

TEST(guard_tap, is_looked_after_at_each_notice) {
  for (const char* notice : {"disable taps", "disable taps timeout"}) {
    const Result run =
        guard(deskForAMinute({"1200ms withdraw accessibility", std::string("1300ms ") + notice}));
    EXPECT_EQ(seen(run), guardSays({endedBy("loop")})) << notice;
    EXPECT_EQ(run.elapsed, 1'800'000) << notice;
  }
}

// Of each of the three questions: it says no, or does not come back.
TEST(guard_tap, ends_the_guard_when_one_question_is_answered_no) {
  for (const auto& [question, end] :
       {std::pair("ax.trusted 1", 1'500'000), std::pair("tap.can-be-made 2", 1'500'000),
        std::pair("tap.is-enabled 2+", 1'600'000)}) {
    const Result run = guard(deskForAMinute({}), {}, {std::string(question) + " refused"});
    EXPECT_EQ(seen(run), guardSays({endedBy("loop")})) << question;
    EXPECT_EQ(run.elapsed, end) << question;
  }
}

// The guard has looked, and the notice comes: the tap is enabled again, and all is well.
TEST(guard_tap, that_is_disabled_at_the_instant_of_a_look_is_enabled_again) {
  for (const char* notice : {"disable taps", "disable taps timeout"}) {
    const Result run = guard(deskForAMinute({"3s user key a"}), {},
                             {std::string("tap.is-enabled 2 before ") + notice});
    EXPECT_EQ(seen(run), guardSays({endedBy("user")})) << notice;
  }
}

// Seen disabled twice, each time with the notice on its way, for which there are 100 ms.
TEST(guard_tap, that_is_seen_disabled_again_has_its_own_time_for_the_notice) {
  const Result run = guard(deskForAMinute({"1050ms disable taps", "1150ms disable taps",
                                           "1220ms disable taps", "3s user key a"}),
                           {}, {"tap.is-enabled 2 refused", "tap.is-enabled 4 refused"});
  EXPECT_EQ(seen(run), guardSays({endedBy("user")}));
}

TEST(guard_tap, ends_the_guard_when_one_question_does_not_come_back) {
  for (const char* question : {"ax.trusted 2", "tap.is-enabled 3", "tap.can-be-made 3"}) {
    const Result run = guard(deskForAMinute({}), {}, {std::string(question) + " hang"});
    EXPECT_EQ(seen(run), guardSays({endedBy("loop")})) << question;
    EXPECT_EQ(run.elapsed, 3'600'000) << question;
  }
}

TEST(guard_tap, that_was_seen_disabled_is_given_up_without_a_further_question) {
  const Result run = guard(deskForAMinute({"136ms silence taps"}), {}, {"tap.is-enabled 3 hang"});
  EXPECT_EQ(seen(run), guardSays({endedBy("loop")}));
  EXPECT_EQ(run.elapsed, 1'600'000);
}

// A round is due within the time for the notice: its answers would take a second more.
TEST(guard_tap, whose_notice_is_awaited_is_not_asked_about) {
  const Result run = guard(deskForAMinute({"2047814us invalidate taps"}), {},
                           {"ax.trusted 4+ late", "tap.is-enabled 3 before disable taps timeout"});
  EXPECT_EQ(seen(run), guardSays({endedBy("loop")}));
  EXPECT_EQ(run.elapsed, 4'600'000);
}

TEST(guard_tap, that_holds_all_input_while_a_question_hangs_lets_it_go_within_three_seconds) {
  const Result run = guard(deskForAMinute({"1100ms withdraw accessibility", "1100ms user key a"}),
                           {}, {"ax.trusted 2 hang"});
  EXPECT_EQ(seen(run), guardSays({endedBy("loop")}));
  EXPECT_EQ(run.elapsed, 3'600'000);
}

TEST(guard_tap, ends_the_guard_in_time_when_neither_question_nor_lock_comes_back) {
  TestMac mac(deskForAMinute({"1100ms withdraw accessibility", "1100ms user key a"}),
              {"ax.trusted 2 hang", "private.lock-screen 1+ hang"}, Mode::direct);
  const Result run = guard(mac);
  EXPECT_EQ(seen(run), guardSays({endedBy("loop", false)}));
  EXPECT_EQ(run.elapsed, 3'850'000);
}

TEST(guard_tap, may_be_slow_to_answer_for) {
  const Result run = guard(deskWith({"3500ms user key a"}), {}, {"ax.trusted 2 late"});
  EXPECT_EQ(seen(run), guardSays({endedBy("user")}));
}

TEST(guard_lock, that_a_silent_tap_asks_for_and_that_does_not_come_back_is_reported_in_time) {
  const Result run =
      guard(deskForAMinute({"100ms silence taps"}), {}, {"private.lock-screen 1 hang"});
  EXPECT_EQ(seen(run), guardSays({endedBy("loop", false)}));
  EXPECT_EQ(run.elapsed, 3'600'000);
}

struct TapEnding {
  const char* happening;
  const char* by;
};

constexpr TapEnding tapEndings[] = {
    {"user key b", "user"}, {"signal 15", "signal"}, {"request termination", "quit"},
    {"close input", "run"}, {"end-loop", "loop"},
};

TEST(guard_lock, that_is_late_is_waited_for_while_the_tap_swallows) {
  for (const TapEnding& ending : tapEndings) {
    TestMac mac(deskWith({std::string("2s ") + ending.happening, "2500ms user key a"}),
                {"private.lock-screen 1 late"}, Mode::direct);
    const Result run = guard(mac);
    EXPECT_EQ(seen(run), guardSays({endedBy(ending.by)})) << ending.by;
    EXPECT_EQ(run.elapsed, 3'500'000) << ending.by;
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "") << ending.by;
  }
}

TEST(guard_lock, that_does_not_come_back_is_left_behind_after_two_seconds) {
  for (const TapEnding& ending : tapEndings) {
    TestMac mac(deskWith({std::string("2s ") + ending.happening, "2500ms user key a",
                          "3500ms user key c", "3600ms user click 300,300"}),
                {"private.lock-screen 1+ hang"}, Mode::direct);
    const Result run = guard(mac);
    EXPECT_EQ(seen(run), guardSays({endedBy(ending.by, false)})) << ending.by;
    EXPECT_EQ(run.elapsed, 4'500'000) << ending.by;
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "") << ending.by;
  }
}

TEST(guard_lock, that_is_asked_for_twice_and_hangs_still_comes_to_an_end) {
  const Result run = guard(deskWith({"2s signal 15", "2100ms signal 15", "3s close input"}), {},
                           {"private.lock-screen 1+ hang"});
  EXPECT_EQ(seen(run), guardSays({endedBy("signal", false)}));
  EXPECT_EQ(run.elapsed, 4'500'000);
}

// The rule on the Mac's state sees it: half a second is what a guard gives the login window.
TEST(guard_lock, that_shows_later_than_the_covers_stay_leaves_the_mac_bare) {
  TestMac mac("session locks after 600ms\n" + deskWith({"2s user key a"}), {}, Mode::direct);
  EXPECT_EQ(seen(guard(mac)), guardSays({endedBy("user")}));
  EXPECT_EQ(mac.takeViolations(),
            std::vector<std::string>{"I22: the guard goes before the login window shows"});
}

}  // namespace
