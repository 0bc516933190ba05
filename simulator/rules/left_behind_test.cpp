#include "simulator/rules/left_behind.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"

namespace simulator {

namespace {

constexpr Pid killedRun = 5'000'000;

/// Notes, behind, holds what a process has given and pressed there.
class what_is_left_behind : public testing::Test {
 protected:
  what_is_left_behind() {
    mac_.world = parseWorld(
        "app Browser pid 40 frontmost\n  window 5 \"Web\" at 0,0 size 900x900\n"
        "app Notes pid 41\n  window 7 \"Inbox\" at 0,0 size 900x900\n");
    Application& notes = mac_.world.applications[1];
    notes.focusByRecord = 7;
    notes.focusGivenBy = killedRun;
    notes.keysDown = {{56, killedRun}};
    notes.click.pressedType = 1;
    notes.click.pressedBy = killedRun;
  }

  Application& notes() { return mac_.world.applications[1]; }

  Mac mac_;
};

TEST_F(what_is_left_behind, names_what_a_killed_process_held) {
  mac_.killed.insert(killedRun);

  EXPECT_EQ(
      leftBehind(mac_),
      (Violations{"I27: focus is held in window 7 of Notes by process 5000000, which was killed",
                  "I27: key 56 is held down in Notes by process 5000000, which was killed",
                  "I27: a button is held down in Notes by process 5000000, which was killed"}));
}

TEST_F(what_is_left_behind, says_nothing_of_a_process_that_lives_or_ended_by_itself) {
  EXPECT_EQ(leftBehind(mac_), Violations());
}

TEST_F(what_is_left_behind, says_nothing_once_it_was_undone) {
  mac_.killed.insert(killedRun);
  notes().focusByRecord = 0;
  notes().keysDown.clear();
  notes().click.pressedType.reset();

  EXPECT_EQ(leftBehind(mac_), Violations());
}

TEST_F(what_is_left_behind, leaves_what_is_in_front_its_focus) {
  mac_.killed.insert(killedRun);
  mac_.world.frontmost = 41;
  notes().keysDown.clear();
  notes().click.pressedType.reset();

  EXPECT_EQ(leftBehind(mac_), Violations());
}

TEST_F(what_is_left_behind, forgets_an_application_that_has_quit) {
  mac_.killed.insert(killedRun);
  notes().running = false;

  EXPECT_EQ(leftBehind(mac_), Violations());
}

}  // namespace

}  // namespace simulator
