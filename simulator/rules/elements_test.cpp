#include "simulator/rules/elements.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "platform/window_server.h"
#include "tests/support/broken_run.h"

namespace simulator {

namespace {

using driver::pack;
using platform::ElementReference;
using platform::Function;
using testing_support::broken_run;
using testing_support::Sentences;

const Sentences none;
const Sentences unasked = {"I21: acted on an element before any session check"};
const Sentences unusable = {"I21: acted on an element after a check found no usable session"};

const Sentences asleep = {"I25: acted on an element of a tree that was not enabled"};

/// A run whose calls concern one element of Notes: its second window.
class run_on_elements : public broken_run {
 protected:
  /// They concern this then, in the one window of an application like this.
  void show(const std::string& kind, const std::string& element) {
    mac_.world = parseWorld("app Notes pid 41 " + kind +
                            "\n    window 7 \"Inbox\" at 100,100 size 200x200\n        " + element +
                            " at 110,110 size 20x20\n");
    element_ = mac_.world.applications[0].elements.back().id;
  }

  void press() {
    before(Function::axPerform,
           {pack(ElementReference{41, element_}), pack(std::string("AXPress"))});
  }

  void write(const char* attribute) {
    before(Function::axSetAttribute,
           {pack(ElementReference{41, element_}), pack(std::string(attribute)), pack(true)});
  }

  ElementId element_ = 2;
};

TEST_F(run_on_elements, may_act_once_the_session_was_found_usable) {
  checkSession();
  press();
  write("AXFocused");

  EXPECT_EQ(violations_, none);
}

TEST_F(run_on_elements, may_not_act_before_it_has_asked_whatever_the_session_is) {
  press();
  EXPECT_EQ(std::exchange(violations_, {}), unasked);
  mac_.world.session.locked = true;
  press();
  EXPECT_EQ(std::exchange(violations_, {}), unasked);
  write("AXValue");
  EXPECT_EQ(violations_, unasked);
}

TEST_F(run_on_elements, may_not_act_while_the_screen_was_found_locked) {
  mac_.world.session.locked = true;
  checkSession();
  press();

  EXPECT_EQ(violations_, unusable);
}

TEST_F(run_on_elements, may_not_act_while_another_user_was_found_at_the_console) {
  mac_.world.session.onConsole = false;
  checkSession();
  write("AXMinimized");

  EXPECT_EQ(violations_, unusable);
}

TEST_F(run_on_elements, goes_by_the_latest_check) {
  checkSession();
  mac_.world.session.locked = true;
  press();  // nobody has told it yet
  EXPECT_EQ(violations_, none);
  checkSession();
  press();
  EXPECT_EQ(std::exchange(violations_, {}), unusable);
  mac_.world.session.locked = false;
  checkSession();
  press();

  EXPECT_EQ(violations_, none);
}

TEST_F(run_on_elements, may_take_a_session_that_is_not_told_for_usable) {
  call(Function::session, {}, pack(std::optional<windowserver::Session>()));
  press();

  EXPECT_EQ(violations_, none);
}

TEST_F(run_on_elements, may_enable_an_application_at_any_time) {
  write("AXManualAccessibility");
  mac_.world.session.locked = true;
  checkSession();
  write("AXEnhancedUserInterface");

  EXPECT_EQ(violations_, none);
}

TEST_F(run_on_elements, may_read_at_any_time) {
  before(Function::axAttribute,
         {pack(ElementReference{41, element_}), pack(std::string("AXValue"))});

  EXPECT_EQ(violations_, none);
}

TEST_F(run_on_elements, enables_the_tree_of_chromium_before_it_acts_on_it) {
  show("chromium", "AXTextArea \"Body\"");
  checkSession();
  press();
  EXPECT_EQ(std::exchange(violations_, {}), asleep);
  write("AXManualAccessibility");
  write("AXFocused");
  EXPECT_EQ(std::exchange(violations_, {}), asleep);
  write("AXEnhancedUserInterface");
  write("AXFocused");
  press();

  EXPECT_EQ(violations_, none);
}

TEST_F(run_on_elements, enables_any_tree_that_is_built_on_demand) {
  show("tree after 1s", "AXTextArea \"Body\"");
  checkSession();
  write("AXFocused");

  EXPECT_EQ(violations_, asleep);
}

TEST_F(run_on_elements, need_not_enable_what_is_there_anyway) {
  checkSession();
  show("appkit", "AXTextArea \"Body\"");
  press();
  show("chromium", "AXMenuItem \"Save\"");
  press();
  element_ = 1;  // the window
  write("AXMinimized");

  EXPECT_EQ(violations_, none);
}

TEST_F(run_on_elements, asks_anew_for_each_request_of_a_service) {
  client_.arguments = {"driver", "capture-service", "/lock"};
  checkSession();
  press();
  EXPECT_EQ(violations_, none);
  call(Function::acquireOutput, {});
  press();

  EXPECT_EQ(violations_, unasked);
}

}  // namespace

}  // namespace simulator
