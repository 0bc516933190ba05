#include "main/state_queries.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/inside.h"

namespace driver {
namespace state_queries_test {

using namespace testing_support;
using platform::Function;

constexpr const char* desk = R"(
    pointer 12.5,-3
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

std::string seenOf(const std::string& world, std::string_view commandLine,
                   std::vector<std::string> faults = {}) {
  TestMac mac(world, std::move(faults));
  return seen(mac.driver(commandLine));
}

TEST(permissions, tells_both) {
  const std::string world = desk;
  EXPECT_EQ(seenOf(world, "permissions"),
            success(R"({"accessibility":true,"ok":true,"screenRecording":true})"));
  EXPECT_EQ(seenOf(world + "    deny accessibility\n", "permissions"),
            success(R"({"accessibility":false,"ok":true,"screenRecording":true})"));
  EXPECT_EQ(seenOf(world + "    deny screen-recording\n", "permissions"),
            success(R"({"accessibility":true,"ok":true,"screenRecording":false})"));
  EXPECT_EQ(seenOf(world + "    deny accessibility screen-recording\n", "permissions"),
            success(R"({"accessibility":false,"ok":true,"screenRecording":false})"));
}

TEST(permissions, ignores_further_arguments) {
  EXPECT_EQ(seenOf(desk, "permissions now please"),
            success(R"({"accessibility":true,"ok":true,"screenRecording":true})"));
}

TEST(scene, tells_the_front_application_and_the_pointer) {
  EXPECT_EQ(seenOf(desk, "scene"),
            success(R"({"bundleId":"com.example.browser","ok":true,"pid":40,"x":12.5,"y":-3})"));
}

TEST(scene, has_an_empty_bundle_identifier_when_it_is_unknown) {
  EXPECT_EQ(seenOf("app tool pid 50 unbundled frontmost\n", "scene"),
            success(R"({"bundleId":"","ok":true,"pid":50,"x":0,"y":0})"));
}

TEST(scene, without_a_front_application_has_pid_0) {
  EXPECT_EQ(seenOf("app Notes pid 41 bundle com.example.notes\n", "scene"),
            success(R"({"bundleId":"","ok":true,"pid":0,"x":0,"y":0})"));
}

TEST(scene, without_an_event_has_the_pointer_at_the_origin) {
  EXPECT_EQ(seenOf(desk, "scene", {"quartz.create-event 1 absent"}),
            success(R"({"bundleId":"com.example.browser","ok":true,"pid":40,"x":0,"y":0})"));
}

TEST(scene, takes_a_pointer_that_is_not_finite_for_none) {
  TestMac mac(desk);
  const Result run = runInside(mac, [] {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const FixedAnswer answer(Function::createEvent, pack(Point{nan, 5}));
    sceneCommand({"driver", "scene"});
  });
  EXPECT_EQ(seen(run),
            success(R"({"bundleId":"com.example.browser","ok":true,"pid":40,"x":0,"y":0})"));
}

TEST(session, tells_locked_and_on_console) {
  const std::string world = desk;
  EXPECT_EQ(seenOf(world, "session"), success(R"({"locked":false,"ok":true,"onConsole":true})"));
  EXPECT_EQ(seenOf(world + "    session locked\n", "session"),
            success(R"({"locked":true,"ok":true,"onConsole":true})"));
  EXPECT_EQ(seenOf(world + "    session off-console\n", "session"),
            success(R"({"locked":false,"ok":true,"onConsole":false})"));
  EXPECT_EQ(seenOf(world + "    session locked off-console\n", "session"),
            success(R"({"locked":true,"ok":true,"onConsole":false})"));
}

TEST(session, takes_a_missing_console_key_for_on_console) {
  EXPECT_EQ(seenOf(std::string(desk) + "    session without-console-key\n", "session"),
            success(R"({"locked":false,"ok":true,"onConsole":true})"));
}

TEST(session, has_defaults_when_the_dictionary_cannot_be_read) {
  EXPECT_EQ(seenOf(std::string(desk) + "    session unreadable locked off-console\n", "session"),
            success(R"({"locked":false,"ok":true,"onConsole":true})"));
  EXPECT_EQ(seenOf(desk, "session", {"windowserver.session 1 absent"}),
            success(R"({"locked":false,"ok":true,"onConsole":true})"));
}

TEST(isRegularApp, holds_for_applications_in_the_dock) {
  TestMac mac(R"(
    process 900
    app Notes pid 41
    app Agent pid 42 accessory
    app Helper pid 43 prohibited
)");
  runInside(mac, [] {
    EXPECT_TRUE(isRegularApp(41));
    EXPECT_FALSE(isRegularApp(42));
    EXPECT_FALSE(isRegularApp(43));
    EXPECT_FALSE(isRegularApp(900));
    EXPECT_FALSE(isRegularApp(99));
    EXPECT_FALSE(isRegularApp(0));
    EXPECT_FALSE(isRegularApp(-1));
  });
}

}  // namespace state_queries_test
}  // namespace driver
