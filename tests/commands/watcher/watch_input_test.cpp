#include <gtest/gtest.h>

#include <limits>

#include "input/watcher.h"
#include "tests/support/inside.h"
#include "tests/support/posted_events.h"
#include "tests/support/watching.h"

/// How a watch of the user's input begins.
namespace {

using namespace testing_support;

/// What a watcher without a target comes to on a Mac with these lines too.
std::string seenOn(const std::string& lines, const std::vector<std::string>& faults = {}) {
  TestMac mac(watchedDeskWith({}) + lines, faults, Mode::direct);
  return seen(watch(mac, {}));
}

std::string idle(const std::string& milliseconds) {
  return "0 {\"idleMs\":" + milliseconds + ",\"ok\":true,\"watching\":true}\n";
}

TEST(watch_input, tells_first_how_long_the_user_has_been_idle) {
  EXPECT_EQ(seenOn(""), idle("0"));
  EXPECT_EQ(seenOn("idle 5s\n"), idle("5000"));
  EXPECT_EQ(seenOn("idle 2500us\n"), idle("2"));
  EXPECT_EQ(seenOn("idle 1999999us\n"), idle("1999"));
}

TEST(watch_input, tells_no_idle_time_that_is_not_finite) {
  EXPECT_EQ(seenOn("idle never\n"), idle("0"));
  EXPECT_EQ(seenOn("", {"quartz.seconds-since-last 1+ wrong"}), idle("0"));
  for (const double seconds :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), 1e300}) {
    TestMac mac(watchedDesk, {}, Mode::direct);
    const Result run = runInside(mac, [&] {
      const FixedAnswer idleTime(platform::Function::secondsSinceLast, driver::pack(seconds));
      mac.desktop().mac().clients.back()->inputClosed = true;
      driver::watchInput(std::nullopt);
    });
    EXPECT_EQ(seen(run), idle("0")) << seconds;
  }
}

TEST(watch_input, takes_the_shortest_of_all_idle_times) {
  // 5 s without any of them; 3 s without one.
  for (const std::uint32_t type : {1U, 3U, 5U, 6U, 7U, 10U, 12U, 22U, 25U}) {
    TestMac mac(watchedDeskWith({}) + "idle 5s\n", {}, Mode::direct);
    mac.desktop().mac().world.activity.lastTimes[type] = -3'000'000;
    EXPECT_EQ(seen(watch(mac, {})), idle("3000")) << type;
  }
  for (const std::uint32_t type : {2U, 4U, 11U, 26U, 27U}) {
    TestMac mac(watchedDeskWith({}) + "idle 5s\n", {}, Mode::direct);
    mac.desktop().mac().world.activity.lastTimes[type] = -3'000'000;
    EXPECT_EQ(seen(watch(mac, {})), idle("5000")) << type;
  }
}

TEST(watch_input, tells_an_idle_time_beside_unreadable_ones) {
  EXPECT_EQ(seenOn("idle 5s\n", {"quartz.seconds-since-last 1 wrong"}), idle("5000"));
  EXPECT_EQ(seenOn("idle 5s\n", {"quartz.seconds-since-last 2+ wrong"}), idle("5000"));
}

TEST(watch_input, tells_whether_the_user_is_in_the_target) {
  EXPECT_EQ(watched({}, {"Notes"}), reportsOnNotes({}));
  EXPECT_EQ(watched({}, {"Browser"}),
            "0 {\"idleMs\":0,\"ok\":true,\"targetPid\":40,\"touchesTarget\":true,"
            "\"watching\":true}\n");
}

TEST(watch_input, knows_an_application_by_pid_and_bundle_too) {
  EXPECT_EQ(watched({}, {"pid:41"}), reportsOnNotes({}));
  EXPECT_EQ(watched({}, {"com.example.notes"}), reportsOnNotes({}));
}

TEST(watch_input, ignores_further_words) {
  EXPECT_EQ(watched({}, {"Notes", "Browser", "x"}), reportsOnNotes({}));
}

TEST(watch_input, refuses_an_application_that_does_not_run) {
  for (const char* name : {"Nobody", "notes", "pid:99", "pid:", ""}) {
    EXPECT_EQ(watched({}, {name}), failure("target app is not running")) << name;
  }
}

TEST(watch_input, watches_a_hidden_application) {
  std::string world = watchedDeskWith({"1s user key a for Notes"});
  world.insert(world.find("bundle com.example.notes"), "hidden ");
  TestMac mac(world, {}, Mode::direct);
  EXPECT_EQ(seen(watch(mac, {"Notes"})), reportsOnNotes({reportOnTarget("key", 1000, true)}));
}

TEST(watch_input, does_not_touch_what_is_not_known_to_be_in_front) {
  TestMac mac(watchedDeskWith({}) + "missing GetFrontProcess\n", {}, Mode::direct);
  EXPECT_EQ(seen(watch(mac, {"Browser"})),
            "0 {\"idleMs\":0,\"ok\":true,\"targetPid\":40,\"touchesTarget\":false,"
            "\"watching\":true}\n");
}

TEST(watch_input, fails_without_a_tap) {
  const std::string message = failure("cannot watch input: accessibility permission is missing");
  EXPECT_EQ(seenOn("deny accessibility\n"), message);
  EXPECT_EQ(seenOn("", {"tap.create 1 absent"}), message);
  EXPECT_EQ(watched({}, {"Notes"}, {"tap.create 1 absent"}), message);
  EXPECT_EQ(watched({}, {"Nobody"}, {"tap.create 1 absent"}), failure("target app is not running"));
}

TEST(watch_input, begins_while_the_screen_is_locked) {
  EXPECT_EQ(seenOn("session locked\n"), idle("0"));
}

// The tap stands at the tail, listens, and has the mask 0x24014EA.
TEST(watch_input, makes_exactly_these_calls) {
  TestMac mac(watchedDeskWith({}, "1500ms"), {}, Mode::direct);

  const Result run = watch(mac, {"Notes"});

  EXPECT_EQ(run.calls, (std::vector<std::string>{"process.environment",
                                                 "quartz.create-source",
                                                 "process.environment",
                                                 "process.environment",
                                                 "process.environment",
                                                 "process.environment",
                                                 "process.full-user-name",
                                                 "process.given-name",
                                                 "process.environment",
                                                 "workspace.applications-with-bundle",
                                                 "workspace.applications",
                                                 "tap.can-be-made",
                                                 "tap.create",
                                                 "tap.enable",
                                                 "tap.is-enabled",
                                                 "quartz.seconds-since-last",
                                                 "quartz.seconds-since-last",
                                                 "quartz.seconds-since-last",
                                                 "quartz.seconds-since-last",
                                                 "quartz.seconds-since-last",
                                                 "quartz.seconds-since-last",
                                                 "quartz.seconds-since-last",
                                                 "quartz.seconds-since-last",
                                                 "quartz.seconds-since-last",
                                                 "loader.open-library",
                                                 "loader.find-symbol",
                                                 "loader.find-symbol",
                                                 "private.front-process",
                                                 "private.process-pid",
                                                 "loop.go-rounds",
                                                 "loop.start-flow",
                                                 "loop.next-item",
                                                 "tap.can-be-made",
                                                 "tap.is-enabled",
                                                 "streams.read-available",
                                                 "streams.acquire-output"}));
  EXPECT_EQ(waits(mac), "");
  EXPECT_EQ(callsOf(mac, platform::Function::createTap),
            (std::vector<std::string>{"tap.create 1 1 37754090 -> 2"}));
  EXPECT_EQ(callsOf(mac, platform::Function::secondsSinceLast),
            (std::vector<std::string>{
                "quartz.seconds-since-last 5 -> 0", "quartz.seconds-since-last 1 -> 0",
                "quartz.seconds-since-last 3 -> 0", "quartz.seconds-since-last 25 -> 0",
                "quartz.seconds-since-last 6 -> 0", "quartz.seconds-since-last 7 -> 0",
                "quartz.seconds-since-last 22 -> 0", "quartz.seconds-since-last 10 -> 0",
                "quartz.seconds-since-last 12 -> 0"}));
}

/// What a watcher of Notes asks when this happens, beyond the clock and its output.
std::string callsFor(const std::string& input) {
  TestMac mac(watchedDeskWith({"100ms " + input}, "500ms"), {}, Mode::direct);
  const Result run = watch(mac, {"Notes"});
  std::string calls;
  bool isAfterStart = false;
  for (const std::string& call : run.calls) {
    if (isAfterStart && call.starts_with("loop.") == false && !call.starts_with("streams.")) {
      calls += call + " ";
    }
    isAfterStart = isAfterStart || call == "loop.start-flow";
  }
  return calls;
}

TEST(watch_input, asks_only_what_an_event_needs) {
  EXPECT_EQ(callsFor("user press cmd"), "private.front-process private.process-pid ");
  EXPECT_EQ(callsFor("user key return"),
            "private.front-process private.process-pid workspace.frontmost ");
  EXPECT_EQ(callsFor("user press cmd for Notes"), "");
  EXPECT_EQ(callsFor("user scroll 0,1"), "windowserver.windows ");
  EXPECT_EQ(callsFor("user move 1,1"), "");
  EXPECT_EQ(callsFor("user key a tagged"), "");
  EXPECT_EQ(callsFor("disable taps"), "tap.enable tap.can-be-made tap.is-enabled ");
}

}  // namespace
