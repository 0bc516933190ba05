#include "simulator/rules/rules.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/broken_run.h"

/// Runs that end wrongly, or touch what they must not, and the rule that each of them breaks.
namespace simulator {

namespace {

using driver::Datum;
using driver::pack;
using platform::Function;
using testing_support::broken_run;
using testing_support::Sentences;

TEST_F(broken_run, whose_success_has_a_failure_status) {
  EXPECT_EQ(end(done, 1), Sentences{"I6: success with a failure status"});
}

TEST_F(broken_run, whose_status_is_unknown) {
  EXPECT_EQ(end(refused, 2), Sentences{"I6: unknown exit status"});
}

TEST_F(broken_run, whose_output_is_no_reply) {
  EXPECT_EQ(end(""), Sentences{"I6: the output is not exactly one line"});
}

TEST_F(broken_run, is_not_one_whose_reader_refused_the_output) {
  call(Function::writeOutput, {pack("x")}, pack(false));

  EXPECT_EQ(end("", 1), Sentences{});
}

TEST_F(broken_run, is_not_one_that_is_told_to_end_while_its_reader_takes_nothing) {
  before(Function::writeOutput, {pack("x"), pack(true)});
  client_.readerStalls = true;
  client_.told = ToldToEnd{15, 0, false};
  client_.diedBySignal = 15;

  EXPECT_EQ(end("", 0), Sentences{});
}

TEST_F(broken_run, whose_input_was_withheld_and_yet_succeeds) {
  mac_.world.session.locked = true;
  checkSession();

  EXPECT_EQ(end(done), Sentences{"I8: input was withheld, yet the reply is a success"});
}

TEST_F(broken_run, is_not_a_command_without_input_on_a_locked_screen) {
  client_.arguments[1] = "session";
  mac_.world.session.locked = true;
  checkSession();

  EXPECT_EQ(end(done), Sentences{});
}

TEST_F(broken_run, that_gives_focus_and_never_takes_it_back) {
  askForFront(40);
  focusRecord(true);

  EXPECT_EQ(end(), Sentences{"I10: focus was given and never taken back"});
}

TEST_F(broken_run, that_saw_the_target_in_front_only_before_it_gave_focus) {
  askForFront(41);
  focusRecord(true);

  EXPECT_EQ(end(), Sentences{"I10: focus was given and never taken back"});
}

TEST_F(broken_run, that_takes_back_focus_it_never_gave) {
  focusRecord(false);

  EXPECT_EQ(end(), Sentences{"I10: focus was taken back more often than given"});
}

TEST_F(broken_run, is_not_one_that_need_not_take_focus_back) {
  focusRecord(true, -600);  // it was refused
  EXPECT_EQ(violations_, Sentences{});
  focusRecord(true);
  askForSerial(-600);  // the target has quit
  focusRecord(true);
  askForFront(41);  // the target has come to front

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_run, that_restores_a_field_where_it_left_the_focus) {
  client_.arguments = {"driver", "bg-key", "Notes", "a"};
  checkSession();
  focusRecord(true);
  askForFront(41);
  call(Function::axSetAttribute,
       {pack(platform::ElementReference{41, 3}), pack("AXFocused"), pack(true)},
       pack(ax::Outcome{}));
  sleep(100'000);

  EXPECT_EQ(end(), Sentences{"I10: a field gets its focus back where the window's focus was left"});
}

TEST_F(broken_run, of_a_service_that_leaves_held_focus_without_asking_who_is_in_front) {
  client_.arguments = {"driver", "capture-service"};
  askForFront(0);
  focusRecord(true);
  call(Function::acquireOutput, {});

  EXPECT_EQ(end(refused, 1), Sentences{"I10: focus was given and never taken back"});
}

TEST_F(broken_run, is_not_a_service_that_leaves_held_focus_where_the_user_may_be) {
  client_.arguments = {"driver", "capture-service"};
  focusRecord(true);
  call(Function::acquireOutput, {});
  askForFront(0);

  EXPECT_EQ(end(refused, 1), Sentences{});
}

TEST_F(broken_run, is_not_a_service_that_held_focus_twice_of_a_process_which_has_gone) {
  client_.arguments = {"driver", "capture-service"};
  focusRecord(true);
  focusRecord(true);
  askForSerial(-600);

  EXPECT_EQ(end(refused, 1), Sentences{});
}

TEST_F(broken_run, of_a_service_that_takes_held_focus_back_from_where_the_user_may_be) {
  client_.arguments = {"driver", "capture-service"};
  focusRecord(true);
  call(Function::acquireOutput, {});
  askForFront(0);
  focusRecord(false);

  EXPECT_EQ(end(refused, 1),
            Sentences{"I10: focus is taken back from whom the user may have in front"});
}

TEST_F(broken_run, that_posts_into_a_window_outside_the_scope) {
  client_.environment["CU_WINDOW"] = "inbox";
  post(event(moved, 7));
  post(event(moved, 9));
  EXPECT_EQ(violations_, Sentences{});
  post(event(moved, 8));

  EXPECT_EQ(end(), Sentences{"I11: an event into a window outside the scope"});
}

TEST_F(broken_run, that_captures_a_window_outside_the_scope) {
  client_.arguments = {"driver", "capture", "Notes", "out.png"};
  client_.environment["CU_WINDOW"] = "inbox";
  const auto capture = [&](std::vector<WindowNumber> windows) {
    before(Function::screenshot, {pack(platform::WireFilter{1, 1, std::move(windows)})});
  };
  capture({7, 9, 5});  // another application's window is a helper's
  EXPECT_EQ(violations_, Sentences{});
  capture({7, 8});

  EXPECT_EQ(end(done), Sentences{"I11: a window outside the scope is captured"});
}

TEST_F(broken_run, that_acts_on_an_element_outside_the_scope) {
  mac_.world = parseWorld(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,100 size 200x200
            AXButton "Send"
        window 8 "Outbox" at 100,100 size 200x200
            AXButton "Send"
        window 9 at 100,140 size 200x50 sheet of 7
            AXButton "OK"
        menu "File" > "Print"
)");
  client_.environment["CU_WINDOW"] = "inbox";
  const auto elementIn = [&](WindowNumber window) {
    const auto& elements = mac_.world.applications.front().elements;
    const auto found = std::find_if(elements.begin(), elements.end(), [&](const Element& each) {
      return each.window == window && each.role != "AXWindow" && each.role != "AXSheet";
    });
    return pack(platform::ElementReference{41, found->id});
  };
  checkSession();
  for (const WindowNumber window : {7U, 9U, 0U}) {
    call(Function::axPerform, {elementIn(window), pack("AXPress")}, pack(ax::Outcome{}));
  }
  call(Function::axAttribute, {elementIn(8), pack("AXRole")});
  EXPECT_EQ(violations_, Sentences{});
  call(Function::axPerform, {elementIn(8), pack("AXPress")}, pack(ax::Outcome{}));

  EXPECT_EQ(violations_, Sentences{"I11: an act on an element outside the scope"});
}

TEST_F(broken_run, that_asks_a_hung_application_a_third_time) {
  const Datum::List toNotes = {pack(platform::ElementReference{41, 0})};
  const Datum::List toBrowser = {pack(platform::ElementReference{40, 0})};
  call(Function::axAttribute, toNotes, {}, messagingTimeout);
  call(Function::axAttribute, toBrowser, {}, messagingTimeout);
  call(Function::axSetAttribute, toNotes, {}, messagingTimeout);
  call(Function::axAttributes, toNotes, {}, messagingTimeout - 1);
  EXPECT_EQ(violations_, Sentences{});
  call(Function::axActionNames, toNotes, {}, messagingTimeout);

  EXPECT_EQ(end(), Sentences{"I15: a hung application is asked again"});
}

TEST_F(broken_run, that_fails_and_yet_replaces_a_file) {
  call(Function::replaceFile, {pack("out.png"), pack(1)}, pack(true));

  EXPECT_EQ(end(refused, 1), Sentences{"I19: a file was replaced by a failed run"});
}

TEST_F(broken_run, that_lives_on_and_ends_without_a_line) {
  client_.arguments = {"driver", "watch-input"};

  EXPECT_EQ(end("", 1), Sentences{"I7: the run ended without a line"});
}

TEST_F(broken_run, that_lives_on_and_ends_within_a_line) {
  client_.arguments = {"driver", "watch-input"};

  EXPECT_EQ(end("{\"ok\":true}\n{\"e", 1), Sentences{"I7: the last line is not whole"});
}

TEST_F(broken_run, that_lives_on_and_fails_as_if_it_had_not) {
  client_.arguments = {"driver", "keep-awake"};

  EXPECT_EQ(end("{\"ok\":true}\n{\"ok\":false}\n", 0),
            Sentences{"I7: the last line is a failure, the status is not"});
}

TEST_F(broken_run, that_was_killed_is_not_held_to_its_end) {
  focusRecord(true);
  post(event(leftDown));
  rules_.finish(violations_);

  EXPECT_EQ(violations_, Sentences{});
}

TEST_F(broken_run, is_reported_once) {
  end("");

  EXPECT_EQ(end(""), Sentences{"I6: the output is not exactly one line"});
}

}  // namespace

TEST_F(broken_run, that_fails_without_a_reason) {
  EXPECT_EQ(end("{\"ok\":false}\n"), Sentences{"I6: a failure without an \"error\""});
}

}  // namespace simulator
