#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/guarded.h"
#include "tests/support/inside.h"

namespace {

using testing_support::deskWith;
using testing_support::endedBy;
using testing_support::failure;
using testing_support::guard;
using testing_support::guardedDesk;
using testing_support::guardSays;
using testing_support::guardStarts;
using testing_support::Mode;
using testing_support::Result;
using testing_support::seen;
using testing_support::stillRunning;
using testing_support::TestMac;

TEST(lock_guard, covers_holds_and_watches_in_this_order) {
  const Result run = guard(guardedDesk);
  EXPECT_EQ(seen(run), std::to_string(stillRunning) + " " + std::string(guardStarts));
  const std::vector<std::string> calls = {
      "loader.open-library",
      "loader.find-symbol",
      "power.prevent-display-sleep",
      "workspace.prohibit-own-activation",
      "process.login-name",
      "process.tool-output",
      "streams.resolved-path",
      "process.handle-signal",
      "process.handle-signal",
      "process.handle-signal",
      "windowserver.shielding-level",
      "cover.screens",
      "process.environment",
      "process.preferred-languages",
      "cover.measure",
      "cover.measure",
      "cover.measure",
      "cover.show",
      "loop.go-rounds",
      "loop.start-flow",
      "tap.can-be-made",
      "tap.create",
      "tap.enable",
      "tap.is-enabled",
      "loop.signal",
      "loop.start-flow",
      "loop.start-flow",
      "loop.uptime",
      "loop.wait",
      "loop.uptime",
      "loop.next-item",
      "ax.trusted",
      "tap.can-be-made",
      "tap.is-enabled",
      "loop.await-round",
  };
  // What comes before is the start-up of every command, what follows are more rounds.
  const auto first = std::find(run.calls.begin(), run.calls.end(), calls[0]);
  ASSERT_GT(run.calls.end() - first, static_cast<long>(calls.size()));
  EXPECT_EQ(std::vector<std::string>(first, first + static_cast<long>(calls.size())), calls);
}

// Buttons that go down, movements, keys that go down and scrolling, ahead of all other taps.
TEST(lock_guard, decides_about_what_a_user_does_first) {
  TestMac mac(guardedDesk, {}, Mode::direct);
  guard(mac);
  const auto taps = testing_support::callsOf(mac, platform::Function::createTap);
  ASSERT_EQ(taps.size(), 1U);
  EXPECT_EQ(taps[0].substr(0, taps[0].find(" ->")), "tap.create 0 0 37749802");
}

TEST(lock_guard, locks_at_a_key_which_it_swallows_and_ends_half_a_second_later) {
  TestMac mac(deskWith({"2s user key a"}), {}, Mode::direct);
  const Result run = guard(mac);
  EXPECT_EQ(seen(run), guardSays({endedBy("user")}));
  EXPECT_EQ(run.elapsed, 2'500'000);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
  EXPECT_EQ(run.effects, R"(    0 ms  awake 5000000/0 display held
    0 ms  policy 5000000/0 prohibited
    0 ms  cover 5000000/8 shown "Zentrove Desk is minding this Mac" "Press any key or move the mouse to lock" "Keeping an eye on things · Go enjoy yourself"
 2000 ms  happening user key a
 2000 ms  input key-down 0 LOST: swallowed by a tap
 2000 ms  input key-up 0
 2400 ms  screen 5000000/0 locked
 2500 ms  awake 5000000/0 display released with its process
)");
}

TEST(lock_guard, locks_at_whatever_the_user_does) {
  for (const char* deed : {"key a", "key cmd q", "click 300,300", "click 300,300 right",
                           "click 300,300 other", "scroll 0,-1", "scroll 1,0", "move 2,0",
                           "move 1,1", "move 0,2", "move 700,500", "drag 100,100 to 200,200"}) {
    const Result run = guard(deskWith({std::string("1s user ") + deed}));
    EXPECT_EQ(seen(run), guardSays({endedBy("user")})) << deed;
    EXPECT_EQ(run.elapsed, 1'500'000) << deed;
  }
}

TEST(lock_guard, takes_a_trembling_pointer_for_none) {
  TestMac mac(deskWith({"1s user move 1,0", "2s user move 1,1", "3s user move 0,1",
                        "4s user move 0,0", "5s user move 0,0"}),
              {}, Mode::direct);
  EXPECT_EQ(seen(guard(mac)), std::to_string(stillRunning) + " " + std::string(guardStarts));
  EXPECT_FALSE(mac.world().session.locked.value_or(false));
}

TEST(lock_guard, lets_the_tools_own_input_through) {
  TestMac mac(deskWith({"1s user key a tagged", "2s user click 300,300 tagged",
                        "3s user move 700,500 tagged", "4s user scroll 0,-3 tagged",
                        "5s user key b tagged"}),
              {}, Mode::direct);
  EXPECT_EQ(seen(guard(mac)), std::to_string(stillRunning) + " " + std::string(guardStarts));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "ab");
}

TEST(lock_guard, swallows_all_that_comes_after_the_return_when_the_lock_fails) {
  TestMac mac(deskWith({"1s user key a", "1100ms user key b", "1200ms user click 300,300",
                        "1300ms user key c tagged", "1400ms user move 1,0"}),
              {"private.lock-screen 1 error -600"}, Mode::direct);
  const Result run = guard(mac);
  EXPECT_EQ(seen(run), guardSays({endedBy("user", false)}));
  EXPECT_EQ(run.elapsed, 1'500'000);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "c");
}

TEST(lock_guard, says_when_it_cannot_lock) {
  const std::string world = deskWith({"1s user key a"});
  EXPECT_EQ(seen(guard("missing SACLockScreenImmediate\n" + world)),
            guardSays({endedBy("user", false)}));
  EXPECT_EQ(seen(guard("missing login\n" + world)), guardSays({endedBy("user", false)}));
  EXPECT_EQ(seen(guard(world, {}, {"private.lock-screen 1+ error -600"})),
            guardSays({endedBy("user", false)}));
}

TEST(lock_guard, guards_without_a_hold_on_the_display) {
  EXPECT_EQ(seen(guard("deny display-hold\n" + deskWith({"1s user key a"}))),
            "0 {\"covers\":1,\"keepAwake\":false,\"ok\":true}\n" + endedBy("user") + "\n");
}

TEST(lock_guard, fails_where_nobody_may_watch) {
  TestMac mac("deny accessibility\n" + std::string(guardedDesk), {}, Mode::direct);
  const Result run = guard(mac);
  EXPECT_EQ(seen(run),
            failure("cannot watch for the user's return: accessibility permission is missing"));
  EXPECT_EQ(run.elapsed, 0);
  EXPECT_TRUE(mac.world().covers.empty());
  EXPECT_FALSE(mac.world().session.locked.value_or(false));
}

TEST(lock_guard, covers_every_screen) {
  const std::string second = "display 2 1920x1080 at 1440,-180\n";
  EXPECT_EQ(seen(guard(std::string(guardedDesk) + second + "at 1s user key a\n")),
            "0 {\"covers\":2,\"keepAwake\":true,\"ok\":true}\n" + endedBy("user") + "\n");
  EXPECT_EQ(seen(guard(guardedDesk, {}, {"cover.screens 1 empty"})),
            std::to_string(stillRunning) + " {\"covers\":0,\"keepAwake\":true,\"ok\":true}\n");
}

TEST(lock_guard, shields_with_panels_that_fill_their_screens) {
  TestMac mac(std::string(guardedDesk) + "display 2 1920x1080 at 1440,-180\n", {}, Mode::direct);
  guard(mac);
  const auto shows = [&] {
    std::vector<std::string> lines;
    for (const auto& entry : mac.desktop().trace()) {
      if (entry.call.function != platform::Function::showPanel) continue;
      const auto panel = driver::unpack<platform::WirePanel>(entry.call.arguments[0]);
      lines.push_back(std::to_string(panel.level) + " " + std::to_string(panel.frame.x) + "," +
                      std::to_string(panel.frame.y) + " " + std::to_string(panel.frame.width) +
                      "x" + std::to_string(panel.frame.height));
    }
    return lines;
  }();
  EXPECT_EQ(shows, (std::vector<std::string>{"2147483628 0.000000,0.000000 1440.000000x900.000000",
                                             "2147483628 1440.000000,0.000000 "
                                             "1920.000000x1080.000000"}));
}

TEST(lock_guard, takes_no_arguments_and_minds_none) {
  TestMac mac(deskWith({"1s user key a"}), {}, Mode::direct);
  EXPECT_EQ(seen(mac.driver("lock-guard now please")), guardSays({endedBy("user")}));
}

TEST(lock_guard, does_not_start_once_the_capture_service_has_gone) {
  TestMac mac(guardedDesk, {}, Mode::direct);
  EXPECT_EQ(seen(guard(mac, {{"CU_CAPTURE_PID", "900"}})),
            failure("native screen sharing stopped; background input is disabled"));
  EXPECT_TRUE(mac.world().covers.empty());
}

TEST(lock_guard, enables_its_tap_again_when_the_system_has_disabled_it) {
  for (const char* notice : {"disable taps", "disable taps timeout"}) {
    TestMac mac(deskWith({std::string("1s ") + notice, std::string("2s ") + notice,
                          std::string("2s ") + notice, "3s user key a"}),
                {}, Mode::direct);
    const Result run = guard(mac);
    EXPECT_EQ(seen(run), guardSays({endedBy("user")})) << notice;
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "") << notice;
  }
}

// The cover is among the windows that the agent's commands see, in front of all others.
TEST(lock_guard, does_not_get_in_the_agents_way) {
  TestMac mac(guardedDesk, {}, Mode::direct);
  const std::size_t guardian = mac.desktop().join({"driver", "lock-guard"}, {});
  simulator::Cover cover;
  cover.owner = mac.desktop().client(guardian).pid;
  cover.window = 99;
  cover.frame = {0, 0, 1440, 900};
  cover.level = 2147483628;
  mac.desktop().mac().world.covers.push_back(cover);
  EXPECT_EQ(seen(mac.driver("bg-click Notes 130 560")),
            "0 {\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":7}\n");
  mac.desktop().leave(guardian);
  EXPECT_TRUE(mac.world().covers.empty());
}

}  // namespace
