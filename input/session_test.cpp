#include "input/session.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

struct Verdict {
  bool usable = false;
  bool locked = false;
  friend bool operator==(const Verdict&, const Verdict&) = default;
};

Verdict verdictOn(const std::string& session, std::vector<std::string> faults = {}) {
  TestMac mac("app Notes pid 41 frontmost\n" + session, std::move(faults));
  return valueInside(mac, [] { return Verdict{sessionUsable(), screenLocked()}; });
}

TEST(session_check, passes_on_the_console_while_unlocked) {
  EXPECT_EQ(verdictOn(""), (Verdict{true, false}));
}

TEST(session_check, finds_the_screen_locked_whatever_the_console_says) {
  EXPECT_EQ(verdictOn("session locked"), (Verdict{false, true}));
  EXPECT_EQ(verdictOn("session locked off-console"), (Verdict{false, true}));
  EXPECT_EQ(verdictOn("session locked without-console-key"), (Verdict{false, true}));
}

TEST(session_check, finds_the_session_unusable_but_not_locked_away_from_the_console) {
  EXPECT_EQ(verdictOn("session off-console"), (Verdict{false, false}));
}

TEST(session_check, takes_what_is_not_told_for_usable) {
  EXPECT_EQ(verdictOn("session without-console-key"), (Verdict{true, false}));
  EXPECT_EQ(verdictOn("session unreadable locked off-console"), (Verdict{true, false}));
  EXPECT_EQ(verdictOn("", {"windowserver.session 1+ absent"}), (Verdict{true, false}));
}

TEST(session_check, takes_a_session_that_says_it_is_not_locked_for_unlocked) {
  TestMac mac("app Notes pid 41 frontmost\n");
  mac.desktop().mac().world.session.locked = false;
  EXPECT_EQ(valueInside(mac,
                        [] {
                          return Verdict{sessionUsable(), screenLocked()};
                        }),
            (Verdict{true, false}));
}

TEST(session_check, asks_afresh_each_time) {
  TestMac mac("app Notes pid 41 frontmost\n",
              {"windowserver.session 2 before lock", "windowserver.session 4 before unlock"});
  const Result run = runInside(mac, [] {
    EXPECT_TRUE(sessionUsable());
    EXPECT_FALSE(sessionUsable());
    EXPECT_TRUE(screenLocked());
    EXPECT_FALSE(screenLocked());
  });
  EXPECT_EQ(run.calls, std::vector<std::string>(4, "windowserver.session"));
}

}  // namespace
}  // namespace driver
