#include "simulator/rules/ending.h"

#include <gtest/gtest.h>

#include "tests/support/broken_run.h"

/// What a run does that is told to end, and the rule that it breaks.
namespace simulator {

namespace {

using driver::pack;
using platform::Function;
using testing_support::Sentences;

constexpr const char* toldLine =
    "{\"error\":\"the run was told to end by a signal\",\"ok\":false}\n";

class told_run : public testing_support::broken_run {
 protected:
  /// The signal comes while the run asks for something.
  void tell(bool fromOutside = false) {
    client_.told = ToldToEnd{15, mac_.now, fromOutside};
    call(Function::environment, {pack("X")}, pack(std::optional<std::string>()));
  }

  Sentences endBySignal(int number = 15, const std::string& output = toldLine) {
    client_.diedBySignal = number;
    call(Function::dieBySignal, {pack(number)});
    return end(output);
  }
};

TEST_F(told_run, is_right_when_it_says_so_and_ends_by_that_signal) {
  tell();
  EXPECT_EQ(endBySignal(), Sentences{});
}

TEST_F(told_run, that_ends_by_another_signal_or_by_itself) {
  tell();
  EXPECT_EQ(endBySignal(2),
            Sentences{"I24: the run was told to end, and did not end by that signal"});
}

TEST_F(told_run, that_says_something_else) {
  tell();
  EXPECT_EQ(endBySignal(15, refused),
            Sentences{"I24: the run was told to end, and does not say so"});
}

TEST_F(told_run, need_not_say_that_the_service_had_gone) {
  checkService(false);
  tell();
  EXPECT_EQ(endBySignal(), Sentences{});
}

TEST_F(told_run, that_ends_by_itself_says_that_the_service_had_gone) {
  checkService(false);
  call(Function::writeOutput, {pack(done), pack(true)}, pack(true));
  tell();
  EXPECT_EQ(end(done), Sentences{"I2: the run did not end with the refusal"});
}

TEST_F(told_run, that_had_begun_its_reply_may_end_as_if_nothing_had_come) {
  call(Function::writeOutput, {pack(done), pack(true)}, pack(true));
  tell();
  EXPECT_EQ(end(done), Sentences{});
}

TEST_F(told_run, that_posts_a_press_and_leaves_the_button_down) {
  tell();
  post(event(leftDown));
  EXPECT_EQ(endBySignal(), (Sentences{"I24: an act was begun after the run had been told to end",
                                      "I4: a button was left in the wrong state"}));
}

TEST_F(told_run, that_lets_a_button_go) {
  post(event(leftDown));
  tell();
  post(event(leftUp));
  EXPECT_EQ(endBySignal(), Sentences{});
}

TEST_F(told_run, that_gives_focus) {
  tell();
  focusRecord(true);
  focusRecord(false);
  EXPECT_EQ(endBySignal(), Sentences{"I24: an act was begun after the run had been told to end"});
}

TEST_F(told_run, is_right_when_the_act_was_on_its_way_as_the_signal_came_from_outside) {
  tell(true);
  focusRecord(true);
  focusRecord(false);
  EXPECT_EQ(violations_, Sentences{});
  focusRecord(true);
  focusRecord(false);
  EXPECT_EQ(endBySignal(), Sentences{"I24: an act was begun after the run had been told to end"});
}

TEST_F(told_run, that_takes_too_long) {
  tell();
  mac_.now += 250'001;
  EXPECT_EQ(endBySignal(), Sentences{"I24: the run took too long to end"});
}

}  // namespace

}  // namespace simulator
