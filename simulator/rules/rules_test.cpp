#include "simulator/rules/rules.h"

#include <gtest/gtest.h>

#include "simulator/rules/pace.h"
#include "simulator/rules/replies.h"
#include "tests/support/broken_run.h"

/// Runs that post wrongly, and the rule that each of them breaks.
namespace simulator {

namespace {

using driver::pack;
using platform::EventImage;
using platform::Function;
using testing_support::broken_run;
using testing_support::Sentences;

TEST_F(broken_run, is_not_a_correct_one) {
  checkService(true);
  checkSession();
  askForFront(40);
  askForSerial(0);
  focusRecord(true);
  for (const std::uint32_t type : {moved, leftDown, leftUp}) {
    checkSession();
    post(event(type));
  }
  sleep(100'000);
  askForFront(40);
  askForSerial(0);
  focusRecord(false);

  EXPECT_EQ(end(done), Sentences{});
}

TEST_F(broken_run, that_posts_after_a_check_found_no_usable_session) {
  mac_.world.session.locked = true;
  checkSession();
  post(event(moved));

  EXPECT_EQ(end(), Sentences{"I1: posted after a check found no usable session"});
}

TEST_F(broken_run, that_posts_after_a_check_found_another_console) {
  mac_.world.session.onConsole = false;
  checkSession();
  post(event(moved));

  EXPECT_EQ(end(), Sentences{"I1: posted after a check found no usable session"});
}

TEST_F(broken_run, that_posts_twice_between_a_lock_and_the_next_check) {
  checkSession();
  mac_.world.session.locked = true;
  post(event(moved));
  post(event(moved));

  EXPECT_EQ(end(), Sentences{"I1: two operations without a session check between them"});
}

TEST_F(broken_run, is_not_one_that_posts_once_after_a_lock_or_an_event_by_both_routes) {
  checkSession();
  mac_.world.session.locked = true;
  const EventImage both = event(moved);
  postOnly(both);
  postOnly(both, 41, Function::publicPost);
  sleep(waitAfterPost);

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_run, that_posts_after_the_liveness_check_failed) {
  checkService(false);
  post(event(moved));

  EXPECT_EQ(end(std::string(livenessRefusal), 1),
            Sentences{"I2: posted after the liveness check failed"});
}

TEST_F(broken_run, that_posts_twice_after_the_services_death) {
  client_.environment["CU_CAPTURE_PID"] = "900";
  mac_.world.processes.erase(900);
  post(event(moved));
  EXPECT_EQ(violations_, Sentences{});
  post(event(moved));

  EXPECT_EQ(end(), Sentences{"I2: two operations after the service's death"});
}

TEST_F(broken_run, that_met_a_failed_liveness_check_ends_with_the_refusal_and_status_1) {
  const Sentences broken = {"I2: the run did not end with the refusal"};
  const std::pair<std::string, int> ends[] = {
      {done, 0}, {refused, 1}, {std::string(livenessRefusal), 0}};
  for (const auto& [output, status] : ends) {
    Rules rules(mac_, client_);
    Sentences violations;
    rules.before({Function::nullSignal, {pack(Pid{900})}}, 0, violations);
    rules.after({Function::nullSignal, {pack(Pid{900})}}, {pack(false), 0}, false, 0, violations);
    client_.output = output;
    client_.exited = true;
    client_.status = status;
    rules.finish(violations);
    EXPECT_EQ(violations, broken) << output;
  }
}

TEST_F(broken_run, is_not_one_whose_refusal_tells_of_the_clipboard_besides) {
  const std::string refusal =
      R"({"clipboardRestored":false,"error":"native screen sharing stopped; background input is )"
      "disabled\",\"ok\":false}\n";
  EXPECT_TRUE(isLivenessRefusal(refusal));
  EXPECT_TRUE(isLivenessRefusal(std::string(livenessRefusal)));
  EXPECT_FALSE(isLivenessRefusal(done));
  EXPECT_FALSE(isLivenessRefusal("x"));
}

TEST_F(broken_run, that_posts_without_the_own_tag) {
  EventImage untagged = event(moved);
  untagged.publicFields.clear();
  post(untagged);
  EventImage wrong = event(moved);
  wrong.publicFields = {{42, 1}};
  post(wrong);

  EXPECT_EQ(end(),
            (Sentences{"I3: an event without the own tag", "I3: an event without the own tag"}));
}

TEST_F(broken_run, that_posts_to_two_processes) {
  post(event(moved));
  post(event(moved, 5), 40);

  EXPECT_EQ(end(), Sentences{"I3: events to two processes"});
}

TEST_F(broken_run, that_moves_the_users_pointer) {
  before(Function::publicPost, {pack(Pid{41}), pack(event(moved))});
  mac_.world.pointer = {10, 10};
  after(Function::publicPost, {pack(Pid{41}), pack(event(moved))}, {});
  sleep(waitAfterPost);

  EXPECT_EQ(end(), Sentences{"I3: the user's pointer moved"});
}

TEST_F(broken_run, that_changes_the_front_application) {
  before(Function::axSetAttribute, {pack(platform::ElementReference{41, 0})});
  mac_.world.frontmost = 41;
  after(Function::axSetAttribute, {pack(platform::ElementReference{41, 0})}, {});

  EXPECT_EQ(end(), Sentences{"I3: the front application changed"});
}

TEST_F(broken_run, is_not_one_that_brings_up_the_systems_own_question) {
  mac_.world.system.asksForRecording = true;
  before(Function::screenshot, {});
  mac_.world.system.asksForRecording = false;
  mac_.world.frontmost = 41;
  after(Function::screenshot, {}, {});

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_run, is_not_one_whose_target_quits_in_front_by_its_own_reaction) {
  before(Function::publicPost, {pack(Pid{40}), pack(event(moved, 5))});
  mac_.world.applications[0].running = false;
  mac_.world.frontmost = 41;
  after(Function::publicPost, {pack(Pid{40}), pack(event(moved, 5))}, {});
  sleep(waitAfterPost);

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_run, that_leaves_a_button_down_or_up_twice) {
  for (const auto& types : {std::vector<std::uint32_t>{leftDown}, {leftUp}, {rightDown, leftUp}}) {
    Rules rules(mac_, client_);
    Sentences violations;
    for (const std::uint32_t type : types) {
      rules.before({Function::privatePost, {pack(Pid{41}), pack(event(type))}}, 0, violations);
      rules.before({Function::sleep, {pack(waitAfterPost)}}, 0, violations);
      if (type != leftUp) rules.before({Function::sleep, {pack(1'000)}}, 0, violations);
    }
    client_.exited = true;
    client_.output = refused;
    rules.finish(violations);
    EXPECT_EQ(violations.front(), "I4: a button was left in the wrong state");
  }
}

TEST_F(broken_run, is_not_one_that_could_not_create_the_release) {
  post(event(leftDown));
  call(Function::createMouseEvent, {});

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_run, that_does_not_wait_after_an_event) {
  postOnly(event(moved));
  post(event(moved));

  EXPECT_EQ(end(), Sentences{"I5: a wait of 12000 us is missing"});
}

TEST_F(broken_run, that_waits_too_short_or_too_long_after_an_event) {
  postOnly(event(moved));
  sleep(15'000);
  postOnly(event(moved));
  sleep(11'999);

  EXPECT_EQ(end(),
            (Sentences{"I5: a wait of 12000 us is missing", "I5: a wait of 12000 us is missing",
                       "I5: a wait of 11999 us is never due"}));
}

TEST_F(broken_run, that_does_not_wait_after_a_focus_record) {
  std::string record(248, '\0');
  record[0x08] = 0x0D;
  record[0x8A] = 2;
  ++identity_;
  call(Function::postRecord, {pack(0), pack(41), pack(record)}, pack(-600));
  sleep(waitAfterPost);

  EXPECT_EQ(end(), (Sentences{"I5: a wait of 40000 us is missing",
                              "I10: focus was taken back more often than given"}));
}

TEST_F(broken_run, that_waits_for_what_is_never_due) {
  sleep(1);
  sleep(6'000'000);

  EXPECT_EQ(end(), (Sentences{"I5: a wait of 1 us is never due",
                              "I5: a wait of 6000000 us is never due"}));
}

TEST_F(broken_run, that_ends_without_the_wait_after_an_event) {
  postOnly(event(moved));

  EXPECT_EQ(end(), Sentences{"I5: ended without the wait after a post or record"});
}

}  // namespace

TEST_F(broken_run, that_posts_with_the_users_modifiers) {
  auto held = event(moved);
  held.flags.reset();
  post(held);

  EXPECT_EQ(end(), Sentences{"I3: an event with the user's modifiers"});
}

TEST_F(broken_run, that_changes_the_users_key_window) {
  before(Function::session, {});
  mac_.world.applications[0].focusedWindow = 0;
  after(Function::session, {}, pack(std::optional(windowserver::Session{})));

  EXPECT_EQ(end(), Sentences{"I3: the user's key window changed"});
}

TEST_F(broken_run, that_makes_a_window_key_where_it_was_told_that_the_user_is) {
  for (const simulator::Pid told : {41, 40}) {
    askForFront(told);
    const driver::Datum::List record = {pack(0), pack(40), pack(std::string(248, '\0'))};
    before(Function::postRecord, record);
    mac_.world.applications[0].focusedWindow = told;
    after(Function::postRecord, record, pack(0));
    EXPECT_EQ(violations_.size(), told == 40 ? 1U : 0U);
  }

  EXPECT_EQ(end(), Sentences{"I3: the user's key window changed"});
}

TEST_F(broken_run, that_makes_a_window_key_long_after_it_was_told_where_the_user_is) {
  askForFront(41);
  checkSession();
  const driver::Datum::List record = {pack(0), pack(40), pack(std::string(248, '\0'))};
  before(Function::postRecord, record);
  mac_.world.applications[0].focusedWindow = 0;
  after(Function::postRecord, record, pack(0));

  EXPECT_EQ(end(), Sentences{"I3: the user's key window changed"});
}

TEST_F(broken_run, that_presses_what_lies_under_its_pointer_after_the_services_death) {
  client_.environment["CU_CAPTURE_PID"] = "900";
  const auto press = [&] {
    call(Function::axPerform, {pack(platform::ElementReference{41, 3}), pack("AXPress")},
         pack(ax::Outcome{}));
  };
  checkSession();
  checkService(true);
  post(event(moved));
  checkService(true);
  mac_.world.processes.erase(900);
  press();  // it may have died since
  EXPECT_EQ(violations_, Sentences{});
  sleep(500'000);
  press();

  EXPECT_EQ(end(), Sentences{"I2: pressed after the service's death"});
}

TEST_F(broken_run, that_hurries_through_a_click) {
  postOnly(event(leftDown));
  sleep(waitAfterPost);
  postOnly(event(leftUp));
  sleep(waitAfterPost);

  EXPECT_EQ(end(), Sentences{"I5: a wait of 1000 us is missing"});
}

TEST_F(broken_run, that_hurries_to_the_second_click) {
  auto second = event(leftDown);
  second.privateFields.push_back({1, 2});
  post(event(leftDown));
  post(event(leftUp));
  post(second);
  post(event(leftUp));

  EXPECT_EQ(end(), Sentences{"I5: a second click without the wait before it"});
}

TEST_F(broken_run, that_takes_focus_back_at_once) {
  focusRecord(true);
  post(event(leftDown));
  post(event(leftUp));
  focusRecord(false);

  EXPECT_EQ(end(), Sentences{"I5: focus is taken back without the wait before it"});
}

TEST_F(broken_run, that_takes_a_picture_at_once_after_input) {
  post(event(moved));
  call(Function::shareContent, {pack(0)});

  EXPECT_EQ(end(), Sentences{"I5: a picture without the wait before it"});
}

}  // namespace simulator
