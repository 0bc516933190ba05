#include "simulator/rules/guard_state.h"

#include <gtest/gtest.h>

#include <utility>

#include "simulator/text/parse.h"

namespace simulator {
namespace {

using platform::Function;
using Sentences = std::vector<std::string>;

constexpr std::uint64_t keyDown = tap::maskOf(quartz::EventType::keyDown);

/// A Mac on which a guard has covered the one screen, watches, and has written its first line.
class guard_state : public testing::Test {
 protected:
  guard_state() {
    mac_.world = parseWorld("display 1 1440x900\n");
    client_.pid = 5'000'000;
    client_.arguments = {"driver", "lock-guard"};
    Cover cover;
    cover.owner = client_.pid;
    cover.frame = {0, 0, 1440, 900};
    mac_.world.covers = {cover};
    mac_.tapLine.taps = {Tap{1, client_.pid, true, true, keyDown}};
    writes("{\"covers\":1,\"keepAwake\":true,\"ok\":true}");
  }

  void writes(const char* line) {
    const platform::Call call{Function::writeOutput, {driver::pack(line), driver::pack(true)}};
    rules_.before({call}, violations_);
  }

  void asksForLock(std::int32_t status = 0, Microseconds delay = 0) {
    const platform::Call call{Function::lockScreen, {}};
    rules_.after({call}, {driver::pack(status), delay}, violations_);
    if (status == 0) mac_.comingLock = ComingLock{mac_.now, mac_.now + 400'000, client_.pid};
  }

  /// The Mac comes to rest, and time passes.
  void pass(Microseconds time) {
    rules_.beforeTimePasses(violations_);
    mac_.now += time;
    rules_.beforeTimePasses(violations_);
  }

  Tap& tap() { return mac_.tapLine.taps[0]; }

  Mac mac_;
  Client client_;
  WatchedRun run_{mac_, client_};
  GuardStateRules rules_{run_};
  Sentences violations_;
};

const Sentences bare = {"I22: the Mac is unlocked and a screen has no cover"};
const Sentences early = {"I22: a cover goes before a screen has its new one"};
const Sentences unwatched = {"I22: the Mac is unlocked and nobody watches for the user"};
const Sentences left = {"I22: the guard goes before the login window shows"};

TEST_F(guard_state, is_kept_by_a_guard_that_covers_and_watches) {
  pass(60'000'000);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, forbids_a_bare_screen_for_any_time) {
  mac_.world.covers[0].frame.y = 25;
  pass(1);
  EXPECT_EQ(violations_, bare);
}

TEST_F(guard_state, gives_half_a_second_for_a_screen_that_changes) {
  mac_.screensChanged = 0;
  mac_.world.covers.clear();
  pass(500'000);
  EXPECT_EQ(violations_, Sentences());
  pass(1);
  EXPECT_EQ(violations_, bare);
}

TEST_F(guard_state, gives_half_a_second_since_the_first_line_for_a_screen_that_changed_before_it) {
  mac_.now = 5'000'000;
  mac_.screensChanged = 4'000'000;
  mac_.world.covers.clear();
  GuardStateRules late(run_);
  const platform::Call call{
      Function::writeOutput,
      {driver::pack("{\"covers\":1,\"keepAwake\":true,\"ok\":true}"), driver::pack(true)}};
  late.before({call}, violations_);
  late.beforeTimePasses(violations_);
  mac_.now += 500'000;
  late.beforeTimePasses(violations_);
  EXPECT_EQ(violations_, Sentences());
  ++mac_.now;
  late.beforeTimePasses(violations_);
  EXPECT_EQ(violations_, bare);
}

TEST_F(guard_state, forbids_a_cover_to_go_before_a_screen_that_the_guard_knows_has_its_new_one) {
  const platform::Call close{Function::closePanel, {driver::pack(0)}};
  mac_.world.displays[0].frame.width = 1680;
  client_.items = {{platform::ItemKind::screenChange, 0, 0, {}}};
  rules_.before({close}, violations_);  // it has not heard of it
  EXPECT_EQ(violations_, Sentences());
  client_.items.clear();
  rules_.before({close}, violations_);
  EXPECT_EQ(std::exchange(violations_, {}), early);

  mac_.world.covers.push_back(mac_.world.covers[0]);
  mac_.world.covers[1].frame.width = 1680;
  rules_.before({close}, violations_);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, asks_for_covers_until_the_login_window_shows) {
  asksForLock();
  mac_.world.covers.clear();
  pass(399'999);
  EXPECT_EQ(violations_, bare);
}

TEST_F(guard_state, excuses_a_screen_that_comes_once_the_lock_is_asked_for) {
  asksForLock();
  mac_.screensChanged = 0;
  mac_.world.covers.clear();
  pass(400'000);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, leaves_a_new_screen_to_the_lock_that_is_asked_for_within_half_a_second) {
  mac_.screensChanged = 0;
  mac_.world.covers.clear();
  pass(500'000);
  asksForLock();
  pass(400'000);
  mac_.comingLock.reset();
  mac_.world.session.locked = true;
  pass(1);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, gives_a_new_screen_the_time_that_the_system_takes_to_answer) {
  const platform::Call asks{Function::axTrusted, {}};
  rules_.after({asks}, {driver::pack(true), 1'000'000}, violations_);
  mac_.screensChanged = 1;
  mac_.world.covers.clear();
  pass(1'000'000);
  EXPECT_EQ(violations_, Sentences());
  pass(1);
  EXPECT_EQ(violations_, bare);
}

TEST_F(guard_state, does_not_leave_a_new_screen_to_a_lock_that_is_asked_for_later) {
  mac_.screensChanged = 0;
  mac_.world.covers.clear();
  pass(500'001);
  asksForLock();
  pass(400'000);
  EXPECT_EQ(violations_, bare);
}

TEST_F(guard_state, forbids_a_tap_that_sees_nothing_for_longer_than_the_guard_can_know) {
  tap().enabled = false;
  pass(2'500'000);
  EXPECT_EQ(violations_, Sentences());
  pass(1);
  EXPECT_EQ(violations_, unwatched);
}

TEST_F(guard_state, gives_two_seconds_for_the_answer_to_a_lock_that_is_asked_for_by_then) {
  tap().isValid = false;
  pass(2'500'000);
  asksForLock(-600, 3'600'000'000);
  pass(2'000'000);
  EXPECT_EQ(violations_, Sentences());
  pass(1);
  EXPECT_EQ(violations_, unwatched);
}

TEST_F(guard_state, gives_no_time_for_a_lock_that_was_refused_at_once) {
  tap().isValid = false;
  pass(2'500'000);
  asksForLock(-600);
  pass(1);
  EXPECT_EQ(violations_, unwatched);
}

TEST_F(guard_state, takes_a_tap_for_none_that_is_invalid_or_sees_no_keys) {
  tap().isValid = false;
  pass(2'000'000);
  tap() = Tap{1, client_.pid, true, true, keyDown >> 1U};
  pass(500'001);
  EXPECT_EQ(violations_, unwatched);
}

TEST_F(guard_state, is_nothing_to_a_locked_mac_and_another_users) {
  mac_.world.covers.clear();
  mac_.tapLine.taps.clear();
  mac_.world.session.locked = true;
  pass(60'000'000);
  mac_.world.session.locked.reset();
  mac_.world.session.onConsole = false;
  pass(60'000'000);
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, is_over_with_grace_and_with_a_line_that_tells_of_a_lock_that_failed) {
  for (const char* line :
       {"{\"by\":\"grace\",\"ok\":true}", "{\"by\":\"user\",\"ok\":true,\"relocked\":false}"}) {
    GuardStateRules fresh(run_);
    const platform::Call call{Function::writeOutput, {driver::pack(line), driver::pack(true)}};
    fresh.before({call}, violations_);
    mac_.world.covers.clear();
    client_.exited = true;
    fresh.atEnd(violations_);
    EXPECT_EQ(violations_, Sentences()) << line;
  }
}

TEST_F(guard_state, forbids_to_go_before_the_login_window_shows) {
  asksForLock();
  client_.exited = true;
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, left);
}

TEST_F(guard_state, is_over_once_the_login_window_has_shown_whoever_unlocks_then) {
  asksForLock();
  mac_.world.session.locked = true;
  pass(1);
  mac_.world.session.locked.reset();
  client_.exited = true;
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, is_over_at_once_for_a_guard_that_asks_for_the_lock_of_a_locked_screen) {
  mac_.world.session.locked = true;
  asksForLock();
  mac_.world.session.locked.reset();
  client_.exited = true;
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, is_not_over_for_a_lock_that_the_guard_has_not_asked_for) {
  mac_.world.session.locked = true;
  pass(1);
  mac_.world.session.locked.reset();
  asksForLock();
  client_.exited = true;
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, left);
}

TEST_F(guard_state, forbids_that_also_to_one_that_dies_once_it_has_asked_for_the_lock) {
  client_.diedBySignal = 11;
  asksForLock();
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, left);
}

TEST_F(guard_state, excuses_one_that_is_killed) {
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, excuses_one_that_is_killed_while_the_login_window_is_on_its_way) {
  client_.diedBySignal = 9;
  asksForLock();
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_state, forbids_a_tap_to_hold_input_for_more_than_three_seconds) {
  mac_.tapLine.waiting.emplace_back();
  mac_.tapLine.hold = TapLine::Hold{1, 1, std::nullopt};
  tap().isDead = true;
  pass(3'000'000);
  EXPECT_EQ(violations_, Sentences());
  pass(1);
  EXPECT_EQ(violations_,
            Sentences{"I23: a tap holds the user's input for more than three seconds"});
}

}  // namespace
}  // namespace simulator
