#include <gtest/gtest.h>

#include "guard/display_hold.h"
#include "platform/power.h"
#include "tests/support/guarded.h"
#include "tests/support/inside.h"

namespace display_hold_test {

using testing_support::failure;
using testing_support::Mode;
using testing_support::Result;
using testing_support::seen;
using testing_support::stillRunning;
using testing_support::success;
using testing_support::TestMac;

Result run(TestMac& mac, const std::string& commandLine) { return mac.driver(commandLine); }

TEST(lock_now, locks) {
  TestMac mac("", {}, Mode::direct);
  const Result result = run(mac, "lock-now");
  EXPECT_EQ(seen(result), success("{\"ok\":true}"));
  EXPECT_EQ(result.effects, "");
  mac.desktop().advanceTo(399'999);
  EXPECT_FALSE(mac.world().session.locked.value_or(false));
  mac.desktop().advanceTo(400'000);
  EXPECT_TRUE(mac.world().session.locked.value_or(false));
}

TEST(lock_now, minds_no_further_arguments) {
  TestMac mac("", {}, Mode::direct);
  EXPECT_EQ(seen(run(mac, "lock-now at once please")), success("{\"ok\":true}"));
}

TEST(lock_now, says_when_it_cannot) {
  for (const char* world : {"missing login", "missing SACLockScreenImmediate"}) {
    TestMac mac(world, {}, Mode::direct);
    EXPECT_EQ(seen(run(mac, "lock-now")), success("{\"ok\":false}")) << world;
    EXPECT_FALSE(mac.world().session.locked.value_or(false));
  }
  TestMac mac("", {"private.lock-screen 1 error -600"}, Mode::direct);
  EXPECT_EQ(seen(run(mac, "lock-now")), success("{\"ok\":false}"));
}

TEST(keep_awake, holds_the_display_until_it_is_ended) {
  TestMac mac("at 5s signal 15", {}, Mode::direct);
  const Result result = run(mac, "keep-awake forever");
  EXPECT_EQ(seen(result), "143 {\"keepAwake\":true,\"ok\":true}\n");
  EXPECT_EQ(result.elapsed, 5'000'000);
  EXPECT_TRUE(mac.desktop().client(0).displayHolds.empty()) << "it goes with the process";
}

TEST(keep_awake, goes_on_as_long_as_nothing_ends_it) {
  TestMac mac("at 5s user key a\nat 6s close input\nat 7s request termination", {}, Mode::direct);
  EXPECT_EQ(seen(run(mac, "keep-awake")),
            std::to_string(stillRunning) + " {\"keepAwake\":true,\"ok\":true}\n");
}

TEST(keep_awake, fails_when_the_system_refuses) {
  TestMac mac("deny display-hold", {}, Mode::direct);
  EXPECT_EQ(seen(run(mac, "keep-awake")), "1 {\"keepAwake\":false,\"ok\":false}\n");
}

TEST(display_holds, are_named_for_the_user) {
  TestMac mac("", {}, Mode::direct);
  run(mac, "keep-awake");
  testing_support::guard(mac);
  std::vector<std::string> names;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function != platform::Function::preventDisplaySleep) continue;
    names.push_back(driver::unpack<std::string>(entry.call.arguments[0]));
  }
  EXPECT_EQ(names, (std::vector<std::string>{
                       "Zentrove Desk: keeps the display awake, without a screen cover, until this "
                       "hold is released",
                       "Zentrove Desk screen cover: keeps the display awake while the cover hides "
                       "this unlocked Mac; any key or mouse movement locks it"}));
}

/// What is held when the system gives this answer.
std::uint32_t heldWith(const power::Assertion& answer) {
  TestMac mac("", {}, Mode::direct);
  return testing_support::valueInside(mac, [&] {
    const testing_support::FixedAnswer fixed(platform::Function::preventDisplaySleep,
                                             driver::pack(answer));
    return driver::holdDisplayAwake("a reason");
  });
}

TEST(display_holds, are_held_when_the_system_says_so_and_numbers_them) {
  EXPECT_EQ(heldWith({0, 7}), 7U);
  EXPECT_EQ(heldWith({0, 0}), 0U);
  EXPECT_EQ(heldWith({-536870212, 7}), 0U);
}

TEST(removed_lock_commands, say_what_there_is_instead) {
  for (const char* command :
       {"lock-serve", "lock-arm", "lock-disarm", "lock-status", "lock-query", "lock-unlock"}) {
    for (const char* arguments : {"", " extra words"}) {
      TestMac mac("session locked", {}, Mode::direct);
      EXPECT_EQ(seen(run(mac, std::string(command) + arguments)),
                failure("locked-use unlock was removed: SecurityAgent-plugin unlock is blocked by "
                        "macOS Library Validation. Use lock-guard \\/ keep-awake instead."))
          << command;
    }
  }
}

}  // namespace display_hold_test
