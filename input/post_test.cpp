#include "input/post.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using platform::Function;

using Calls = std::vector<std::string>;

constexpr const char* postDesk = R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

std::optional<quartz::Event> someEvent() {
  auto event = quartz::createMouseEvent(nullptr, quartz::EventType::mouseMoved, {130, 95},
                                        quartz::MouseButton::left);
  if (!event) return event;
  quartz::setFlags(*event, 0);
  quartz::setField(*event, quartz::Field::mouseEventNumber, 3);  // a move by itself
  return event;
}

/// Posts one event to Notes by these routes.
Result post(TestMac& mac, Routes routes, const Environment& environment = {}) {
  return runInside(
      mac, [&] { postTarget(someEvent(), 41, routes); }, environment);
}

/// The posts that were made, by the names of their functions.
Calls postsIn(const Result& run) {
  Calls posts;
  for (const std::string& call : run.calls) {
    if (call == "quartz.post" || call == "private.post") posts.push_back(call);
  }
  return posts;
}

TEST(postTarget, takes_the_public_route_by_default) {
  TestMac mac(postDesk);
  const Result run = runInside(mac, [] { postTarget(someEvent(), 41); });
  EXPECT_EQ(run.calls, (Calls{"quartz.create-mouse-event", "process.environment",
                              "windowserver.session", "quartz.post", "loop.sleep"}));
  EXPECT_EQ(run.elapsed, 12'000);
}

TEST(postTarget, takes_the_private_route_alone) {
  TestMac mac(postDesk);
  const Result run = post(mac, {true, false});
  EXPECT_EQ(run.calls,
            (Calls{"quartz.create-mouse-event", "process.environment", "windowserver.session",
                   "loader.open-library", "loader.find-symbol", "private.post", "loop.sleep"}));
  EXPECT_EQ(run.elapsed, 12'000);
}

TEST(postTarget, posts_twice_by_both_routes_the_private_one_first) {
  TestMac mac(postDesk);
  const Result run = post(mac, {true, true});
  EXPECT_EQ(postsIn(run), (Calls{"private.post", "quartz.post"}));
  EXPECT_EQ(run.elapsed, 12'000);
}

TEST(postTarget, marks_the_event_as_the_tools_own) {
  TestMac mac(postDesk);
  post(mac, {true, true});
  int posts = 0;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function != Function::privatePost &&
        entry.call.function != Function::publicPost) {
      continue;
    }
    ++posts;
    EXPECT_EQ(unpack<platform::Pid>(entry.call.arguments.at(0)), 41);
    const auto event = unpack<platform::EventImage>(entry.call.arguments.at(1));
    ASSERT_EQ(event.publicFields.size(), 2U);  // the first is of the event as it came
    EXPECT_EQ(event.publicFields[1].field, 42U);
    EXPECT_EQ(event.publicFields[1].value, 0x5A545256);
    EXPECT_TRUE(event.privateFields.empty());
  }
  EXPECT_EQ(posts, 2);
}

TEST(postTarget, skips_a_missing_private_route_silently) {
  TestMac mac(std::string(postDesk) + "    missing SLEventPostToPid\n");
  EXPECT_EQ(postsIn(post(mac, {true, true})), Calls{"quartz.post"});
  const Result run = post(mac, {true, false});
  EXPECT_EQ(postsIn(run), Calls{});
  EXPECT_EQ(run.elapsed, 12'000);  // the wait comes all the same
}

TEST(postTarget, does_nothing_about_an_absent_event) {
  TestMac mac(postDesk);
  const Result run = runInside(mac, [] {
    postTarget(std::nullopt, 41, {true, true});
    EXPECT_FALSE(globals().droppedWhileLocked);
  });
  EXPECT_EQ(run.calls, (Calls{"process.environment", "windowserver.session"}));
  EXPECT_EQ(run.elapsed, 0);
}

TEST(postTarget, withholds_the_event_while_the_session_is_unusable) {
  for (const char* session : {"session locked", "session off-console"}) {
    TestMac mac(std::string(postDesk) + "    " + session + "\n");
    const Result run = runInside(mac, [] {
      postTarget(someEvent(), 41, {true, true});
      EXPECT_TRUE(globals().droppedWhileLocked);
    });
    EXPECT_EQ(postsIn(run), Calls{}) << session;
    EXPECT_EQ(run.elapsed, 0) << session;
  }
}

TEST(postTarget, notes_that_an_absent_event_was_withheld_too) {
  TestMac mac(std::string(postDesk) + "    session locked\n");
  EXPECT_TRUE(valueInside(mac, [] {
    postTarget(std::nullopt, 41);
    return globals().droppedWhileLocked;
  }));
}

TEST(postTarget, never_forgets_that_it_withheld_something) {
  TestMac mac(std::string(postDesk) + "    session locked\n",
              {"windowserver.session 2 before unlock"});
  const Result run = runInside(mac, [] {
    postTarget(someEvent(), 41);
    postTarget(someEvent(), 41);
    EXPECT_TRUE(globals().droppedWhileLocked);
  });
  EXPECT_EQ(postsIn(run), Calls{"quartz.post"});
}

TEST(postTarget, asks_for_the_service_and_the_session_before_each_event) {
  TestMac mac(postDesk);
  const Result run = runInside(mac,
                               [] {
                                 const auto event = someEvent();
                                 postTarget(event, 41);
                                 postTarget(event, 41);
                               },
                               {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(run.calls,
            (Calls{"quartz.create-mouse-event", "process.environment", "process.null-signal",
                   "windowserver.session", "quartz.post", "loop.sleep", "process.environment",
                   "process.null-signal", "windowserver.session", "quartz.post", "loop.sleep"}));
}

TEST(postTarget, ends_the_run_when_the_service_has_gone) {
  TestMac mac(std::string(postDesk) + "    session locked\n");
  const Result run = post(mac, {true, true}, {{"CU_CAPTURE_PID", "901"}});
  EXPECT_EQ(seen(run), failure("native screen sharing stopped; background input is disabled"));
  EXPECT_EQ(run.calls,
            (Calls{"quartz.create-mouse-event", "process.environment", "process.null-signal"}));
}

TEST(postTarget, ends_the_run_when_the_service_dies_between_two_events) {
  TestMac mac(std::string(postDesk) + "    at 5ms end process 900\n");
  const Result run = runInside(mac,
                               [] {
                                 for (int i = 0; i < 3; ++i) postTarget(someEvent(), 41);
                               },
                               {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(seen(run), failure("native screen sharing stopped; background input is disabled"));
  EXPECT_EQ(postsIn(run), Calls{"quartz.post"});
  EXPECT_EQ(run.elapsed, 12'000);
}

/// Lets something go in Notes.
Result release(TestMac& mac, const Environment& environment = {}) {
  return runInside(
      mac, [] { postRelease(someEvent(), 41); }, environment);
}

TEST(postRelease, takes_the_public_route_and_the_same_pause) {
  for (const Environment& environment : {Environment{}, Environment{{"CU_CAPTURE_PID", "900"}}}) {
    TestMac mac(postDesk);
    const Result run = release(mac, environment);
    EXPECT_EQ(postsIn(run), Calls{"quartz.post"});
    EXPECT_EQ(run.elapsed, 12'000);
  }
}

TEST(postRelease, says_nothing_when_it_withholds_the_event) {
  TestMac mac(postDesk);
  const Result withoutService = release(mac, {{"CU_CAPTURE_PID", "901"}});
  EXPECT_EQ(seen(withoutService), "0 ");
  EXPECT_EQ(postsIn(withoutService), Calls{});
  TestMac lockedMac(std::string(postDesk) + "    session locked\n");
  EXPECT_EQ(postsIn(release(lockedMac)), Calls{});
  const Result ofNothing = runInside(mac, [] {
    postRelease(std::nullopt, 41);
    EXPECT_FALSE(globals().droppedWhileLocked);
  });
  EXPECT_EQ(ofNothing.calls, Calls{});
}

}  // namespace
}  // namespace driver
