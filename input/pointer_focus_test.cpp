#include "input/focus.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "main/replies.h"
#include "tests/support/inside.h"

namespace {

using namespace testing_support;
using driver::beginPointerFocus;
using driver::endPointerFocus;
using driver::PointerFocus;

constexpr const char* pointerFocusDesk = R"(
    app Browser pid 40 frontmost
    app Notes pid 41
        window 7 "Inbox" at 100,100 size 200x200
)";

constexpr driver::TargetWindow pointerFocusInbox{7, {100, 100, 200, 200}};

TEST(pointer_focus, is_given_and_taken_back_after_the_pause) {
  TestMac mac(pointerFocusDesk);

  const Result run = runInside(mac, [] {
    const PointerFocus focus = beginPointerFocus(41, pointerFocusInbox);
    EXPECT_EQ(focus, PointerFocus::given);
    endPointerFocus(focus, 50'000);
  });

  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n   90 ms  focus 41/7 take\n");
  EXPECT_EQ(run.elapsed, 130'000);
}

TEST(pointer_focus, is_not_needed_in_front_and_nothing_is_waited_for) {
  TestMac mac(pointerFocusDesk);

  const Result run = runInside(mac, [] {
    const PointerFocus focus = beginPointerFocus(40, pointerFocusInbox);
    EXPECT_EQ(focus, PointerFocus::notNeeded);
    endPointerFocus(focus, 50'000);
  });

  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(pointer_focus, is_not_needed_while_this_process_holds_it) {
  TestMac mac(pointerFocusDesk);

  const Result run = runInside(mac, [] {
    driver::globals().heldInputFocus[41] = {1, 7};
    EXPECT_EQ(beginPointerFocus(41, pointerFocusInbox), PointerFocus::notNeeded);
  });

  EXPECT_EQ(run.effects, "");
}

TEST(pointer_focus, that_has_come_to_be_held_is_not_taken_back) {
  TestMac mac(pointerFocusDesk);

  const Result run = runInside(mac, [] {
    const PointerFocus focus = beginPointerFocus(41, pointerFocusInbox);
    driver::globals().heldInputFocus[41] = {1, 7};
    endPointerFocus(focus, 100'000);
  });

  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n");
  EXPECT_EQ(run.elapsed, 140'000);
}

TEST(pointer_focus, is_taken_back_once_and_without_the_pause_when_the_run_fails) {
  TestMac mac(pointerFocusDesk);

  const Result run = runInside(mac, [] {
    beginPointerFocus(41, pointerFocusInbox);
    driver::fail("enough");
  });

  EXPECT_EQ(seen(run), failure("enough"));
  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n   40 ms  focus 41/7 take\n");
  EXPECT_EQ(run.elapsed, 80'000);
}

TEST(pointer_focus, that_was_taken_back_is_not_taken_again_when_the_run_fails) {
  TestMac mac(pointerFocusDesk);

  const Result run = runInside(mac, [] {
    endPointerFocus(beginPointerFocus(41, pointerFocusInbox), 50'000);
    driver::fail("enough");
  });

  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n   90 ms  focus 41/7 take\n");
}

TEST(pointer_focus, is_not_taken_back_by_a_failing_run_when_the_target_is_in_front) {
  TestMac mac(pointerFocusDesk);

  const Result run = runInside(mac, [&] {
    beginPointerFocus(41, pointerFocusInbox);
    mac.desktop().mac().world.frontmost = 41;
    driver::fail("enough");
  });

  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n");
}

TEST(pointer_focus, that_is_refused_has_nothing_to_undo) {
  TestMac mac(pointerFocusDesk, {"private.post-record 1 error -600"});

  const Result run = runInside(mac, [] {
    EXPECT_EQ(beginPointerFocus(41, pointerFocusInbox), PointerFocus::unavailable);
    driver::fail("enough");
  });

  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 40'000);
}

}  // namespace
