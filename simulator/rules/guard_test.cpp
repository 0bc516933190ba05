#include "simulator/rules/guard.h"

#include <gtest/gtest.h>

namespace simulator {
namespace {

using driver::Datum;
using platform::Function;
using platform::ItemKind;
using Sentences = std::vector<std::string>;

constexpr std::int64_t tag = 0x5A545256;

/// The calls of one run of the guard as they come to its rules.
class guard_rules : public testing::Test {
 protected:
  guard_rules() {
    client_.pid = 5'000'000;
    client_.arguments = {"driver", "lock-guard"};
  }

  void call(Function function, Datum::List arguments = {}, Datum answer = {},
            std::size_t flow = 0) {
    const platform::Call made{function, std::move(arguments)};
    rules_.before({made, flow}, violations_);
    rules_.after({made, flow}, {std::move(answer), 0}, violations_);
  }

  void start(const char* grace = nullptr) {
    if (grace != nullptr) client_.environment["ZENTROVE_COVER_GRACE"] = grace;
    call(Function::findSymbol, {driver::pack(3), driver::pack("SACLockScreenImmediate")},
         driver::pack(true));
    call(Function::enableTap);
    write("{\"covers\":1,\"keepAwake\":true,\"ok\":true}");
  }

  void write(const char* line) {
    call(Function::writeOutput, {driver::pack(line)}, driver::pack(true));
  }

  void comes(std::uint32_t type, std::int64_t data = 0, std::int64_t delta = 9) {
    tap::Event event;
    event.type = type;
    event.sourceUserData = data;
    event.deltaX = delta;
    call(Function::nextItem, {}, driver::pack(platform::WireItem{ItemKind::tapEvent, 1, 1, event}));
  }

  void verdict(bool pass) {
    call(Function::tapVerdict, {driver::pack(1), driver::pack(1), driver::pack(pass)});
  }

  void lock(std::int32_t status = 0, Microseconds delay = 0) {
    const platform::Call made{Function::lockScreen, {}};
    rules_.before({made}, violations_);
    rules_.after({made}, {driver::pack(status), delay}, violations_);
  }

  void returnsAndLocks() {
    comes(key);
    lock();
    write("{\"by\":\"user\",\"ok\":true,\"relocked\":true}");
    verdict(false);
  }

  void exits() { call(Function::exit, {driver::pack(0)}); }

  static constexpr std::uint32_t key = 10;
  static constexpr std::uint32_t move = 5;

  Mac mac_;
  Client client_;
  WatchedRun run_{mac_, client_};
  GuardRules rules_{run_};
  Sentences violations_;
};

TEST_F(guard_rules, are_kept_by_a_guard_that_locks_at_a_key) {
  start();
  returnsAndLocks();
  exits();
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_rules, forbid_to_end_without_a_lock) {
  start();
  exits();
  EXPECT_EQ(violations_, Sentences{"I16: the guard ends without having locked the screen"});
}

TEST_F(guard_rules, forbid_to_say_relocked_before_the_lock) {
  start();
  write("{\"by\":\"signal\",\"ok\":true,\"relocked\":true}");
  EXPECT_EQ(violations_, Sentences{"I16: \"relocked\" is not what the lock before it gave"});
}

TEST_F(guard_rules, take_the_latest_lock_that_has_come_back_for_what_a_line_tells) {
  start();
  lock(0, 1'000);
  mac_.now += 1'000;
  lock(0, 1'000);
  write("{\"by\":\"user\",\"ok\":true,\"relocked\":true}");
  EXPECT_EQ(violations_, Sentences{});

  write("{\"by\":\"signal\",\"ok\":true,\"relocked\":true}");
  EXPECT_EQ(violations_, Sentences{"I16: \"relocked\" is not what the lock before it gave"});
}

TEST_F(guard_rules, forbid_to_say_relocked_after_a_lock_that_failed) {
  start();
  lock(-600);
  write("{\"by\":\"signal\",\"ok\":true,\"relocked\":true}");
  EXPECT_EQ(violations_, Sentences{"I16: \"relocked\" is not what the lock before it gave"});
}

TEST_F(guard_rules, forbid_two_reasons_beside_the_users) {
  start();
  for (const char* line : {"{\"by\":\"signal\",\"ok\":true,\"relocked\":true}",
                           "{\"by\":\"run\",\"ok\":true,\"relocked\":true}"}) {
    lock();
    write(line);
  }
  EXPECT_EQ(violations_, Sentences{"I16: the guard says more than once why it ends"});
}

TEST_F(guard_rules, let_the_users_reason_come_late_when_the_user_came_first) {
  constexpr const char* user = "{\"by\":\"user\",\"ok\":true,\"relocked\":true}";
  constexpr const char* run = "{\"by\":\"run\",\"ok\":true,\"relocked\":true}";
  start();
  comes(key);
  lock();
  write(run);
  lock();
  write(user);
  verdict(false);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_rules, forbid_the_users_reason_after_another_when_nobody_had_come) {
  start();
  lock();
  write("{\"by\":\"run\",\"ok\":true,\"relocked\":true}");
  comes(key);
  lock();
  write("{\"by\":\"user\",\"ok\":true,\"relocked\":true}");
  EXPECT_EQ(violations_, Sentences{"I16: the guard says more than once why it ends"});
}

TEST_F(guard_rules, count_grace_from_when_the_tap_is_known_to_work) {
  client_.environment["ZENTROVE_COVER_GRACE"] = "2";
  call(Function::findSymbol, {driver::pack(3), driver::pack("SACLockScreenImmediate")},
       driver::pack(true));
  call(Function::enableTap);
  const platform::Call asks{Function::tapIsEnabled, {}};
  rules_.after({asks}, {driver::pack(true), 1'000'000}, violations_);
  mac_.now = 1'000'000;
  write("{\"covers\":1,\"keepAwake\":true,\"ok\":true}");
  mac_.now = 2'999'999;
  comes(key);
  verdict(false);
  EXPECT_EQ(violations_, Sentences());

  mac_.now = 3'000'000;
  comes(key);
  verdict(false);
  EXPECT_EQ(violations_, Sentences{"I16: the user is back and the screen is not locked"});
}

TEST_F(guard_rules, forbid_grace_where_there_is_none) {
  start();
  mac_.now = 3'000'000;
  comes(key);
  write("{\"by\":\"grace\",\"ok\":true}");
  EXPECT_EQ(violations_, (Sentences{"P14: the guard calls something before it locks",
                                    "I16: grace when there is none"}));
}

TEST_F(guard_rules, forbid_grace_in_its_first_second_and_after_its_end) {
  start("10");
  for (const Microseconds time : {999'999, 10'000'000}) {
    violations_.clear();
    mac_.now = time;
    write("{\"by\":\"grace\",\"ok\":true}");
    ASSERT_FALSE(violations_.empty());
    EXPECT_EQ(violations_.back(), "I16: grace when there is none");
  }
}

TEST_F(guard_rules, let_the_user_back_while_grace_lasts) {
  start("10");
  mac_.now = 3'000'000;
  comes(key);
  call(Function::uptime, {}, driver::pack(0));
  write("{\"by\":\"grace\",\"ok\":true}");
  verdict(false);
  exits();
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_rules, forbid_to_call_anything_before_the_lock) {
  start();
  comes(key);
  call(Function::screens);
  lock();
  verdict(false);
  EXPECT_EQ(violations_, Sentences{"P14: the guard calls something before it locks"});
}

TEST_F(guard_rules, let_grace_run_out_while_its_line_is_written) {
  start("3");
  mac_.now = 2'900'000;
  comes(key);
  write("{\"by\":\"grace\",\"ok\":true}");
  mac_.now = 3'100'000;
  call(Function::postToMain);
  verdict(false);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_rules, forbid_to_ask_a_clock_where_there_is_no_grace) {
  start();
  comes(key);
  call(Function::uptime, {}, driver::pack(0));
  lock();
  verdict(false);
  EXPECT_EQ(violations_, Sentences{"P14: the guard calls something before it locks"});
}

TEST_F(guard_rules, forbid_to_let_the_users_input_pass_or_to_leave_it_unanswered) {
  start();
  comes(key);
  verdict(true);
  EXPECT_EQ(violations_, (Sentences{"I17: the user's input passes the guard",
                                    "I16: the user is back and the screen is not locked"}));
}

TEST_F(guard_rules, forbid_to_mind_own_input_and_a_trembling_pointer) {
  start();
  comes(key, tag);
  lock();
  verdict(true);
  EXPECT_EQ(violations_,
            Sentences{"I17: own input, or none to speak of, makes the guard do something"});
  violations_.clear();
  comes(move, 0, 1);
  verdict(false);
  EXPECT_EQ(violations_, Sentences{"I17: input that is not the user's is swallowed"});
}

TEST_F(guard_rules, forbid_to_leave_a_tap_disabled) {
  start();
  comes(tap::disabledByTimeout);
  comes(tap::disabledByUserInput);
  EXPECT_EQ(violations_, Sentences{"I17: a disabled tap is not enabled again"});
  call(Function::enableTap);
  comes(key, tag);
  EXPECT_EQ(violations_.size(), 1U);
}

TEST_F(guard_rules, forbid_to_die_of_a_signal_that_could_be_handled) {
  start();
  client_.diedBySignal = 15;
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences{"I16: a signal ends the guard before the screen is locked"});
}

TEST_F(guard_rules, let_it_be_killed_and_die_before_it_watches) {
  client_.diedBySignal = 15;
  rules_.atEnd(violations_);
  start();
  client_.diedBySignal = 9;
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_rules, excuse_a_mac_without_a_lock) {
  call(Function::enableTap);
  write("{\"covers\":1,\"keepAwake\":true,\"ok\":true}");
  comes(key);
  write("{\"by\":\"user\",\"ok\":true,\"relocked\":false}");
  verdict(false);
  exits();
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_rules, are_nothing_to_other_commands) {
  client_.arguments = {"driver", "watch-input"};
  start();
  comes(key);
  verdict(true);
  exits();
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_rules, forbid_to_wait_until_the_input_has_gone_past_the_tap) {
  start();
  comes(key);
  lock();
  call(Function::waitForSemaphore, {driver::pack(2'000'000)}, driver::pack(false));
  mac_.now += 1'000'000;
  verdict(false);
  EXPECT_EQ(violations_,
            Sentences{"I17: the guard waits until the user's input has gone past its tap"});
}

TEST_F(guard_rules, allow_to_wait_as_long_as_the_input_does) {
  start();
  comes(key);
  lock();
  call(Function::waitForSemaphore, {driver::pack(2'000'000)}, driver::pack(false));
  mac_.now += 999'999;
  verdict(false);
  EXPECT_EQ(violations_, Sentences());
}

TEST_F(guard_rules, forbid_to_run_another_program_while_the_guard_watches) {
  call(Function::toolOutput);
  start();
  EXPECT_EQ(violations_, Sentences());
  call(Function::toolOutput);
  EXPECT_EQ(violations_, Sentences{"P14: the guard runs another program while it watches"});
}

TEST_F(guard_rules, want_the_lock_looked_up_before_the_guard_watches) {
  start();
  call(Function::findSymbol, {driver::pack(3), driver::pack("SACLockScreenImmediate")},
       driver::pack(true), 1);
  EXPECT_EQ(violations_, Sentences{"P14: the guard looks an entry up while it watches"});
}

TEST_F(guard_rules, want_the_screen_locked_when_the_agent_has_gone) {
  start();
  call(Function::readAvailable, {}, driver::pack("minding\n"), 1);
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences());
  call(Function::readAvailable, {}, driver::pack(""), 1);
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_,
            Sentences{"I16: the guard's agent has gone, and the screen is not locked"});
}

TEST_F(guard_rules, forbid_to_wait_for_the_reader_for_ever) {
  start();
  comes(key);
  lock();
  rules_.before({{Function::writeOutput, {driver::pack("{\"by\":\"user\"}")}}, 0}, violations_);
  violations_.clear();
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences{"I16: the guard waits for its reader, and does not end"});
}

}  // namespace
}  // namespace simulator
