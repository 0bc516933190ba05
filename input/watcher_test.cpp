#include "input/watcher.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "platform/loop.h"
#include "tests/support/inside.h"
#include "tests/support/tap_events.h"

namespace driver {
namespace {

using namespace testing_support;
using quartz::EventType;

constexpr const char* watcherDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 100x50
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

tap::Event towards(platform::Pid pid, tap::Event made) {
  made.targetProcess = pid;
  return made;
}

tap::Event move(std::int64_t delta) {
  tap::Event made = eventOf(EventType::mouseMoved, {200, 200});
  made.deltaX = delta;
  return made;
}

/// What is written of these events, one directly after the other, without the time.
std::string reported(const std::vector<tap::Event>& events, std::optional<platform::Pid> target,
                     const std::string& world = watcherDesk) {
  TestMac mac(world);
  std::string output = runInside(mac, [&] {
                         globals().watchedInputPID = target;
                         for (const tap::Event& one : events) reportInput(one);
                       }).output;
  mac.takeViolations();  // several lines, on purpose
  for (std::size_t at = 0; (at = output.find("\"at\":", at)) != std::string::npos;) {
    output.erase(at, output.find(',', at) + 1 - at);
  }
  return output;
}

TEST(reportInput, tells_kind_and_time) {
  TestMac mac(watcherDesk);
  const Result run = runInside(mac, [] {
    const FixedAnswer clock(platform::Function::calendar, driver::pack(1792000000.1239));
    reportInput(eventOf(EventType::scrollWheel));
  });
  EXPECT_EQ(run.output, "{\"at\":1792000000123,\"input\":\"scroll\"}\n");
  mac.takeViolations();  // no "ok"
}

TEST(reportInput, does_not_say_what_is_touched_without_a_target) {
  EXPECT_EQ(reported({eventOf(EventType::leftMouseDown, {200, 200})}, std::nullopt),
            "{\"input\":\"pointer\"}\n");
}

TEST(reportInput, finds_the_target_under_the_pointer) {
  EXPECT_EQ(reported({eventOf(EventType::leftMouseDown, {200, 200})}, 41),
            "{\"input\":\"pointer\",\"touchesTarget\":true}\n");
  EXPECT_EQ(reported({eventOf(EventType::scrollWheel, {50, 50})}, 41),
            "{\"input\":\"scroll\",\"touchesTarget\":false}\n");
  EXPECT_EQ(reported({eventOf(EventType::rightMouseDown, {1000, 800})}, 41),
            "{\"input\":\"pointer\",\"touchesTarget\":false}\n");
}

TEST(reportInput, believes_an_event_that_names_the_target) {
  EXPECT_EQ(reported({towards(41, eventOf(EventType::otherMouseDown, {50, 50}))}, 41),
            "{\"input\":\"pointer\",\"touchesTarget\":true}\n");
  EXPECT_EQ(reported({towards(41, keyDown(0))}, 41),
            "{\"input\":\"key\",\"touchesTarget\":true}\n");
  EXPECT_EQ(reported({towards(42, keyDown(0))}, 41),
            "{\"input\":\"key\",\"touchesTarget\":false}\n");
}

TEST(reportInput, finds_keys_on_the_target_in_front) {
  EXPECT_EQ(reported({eventOf(EventType::flagsChanged)}, 40),
            "{\"input\":\"key\",\"touchesTarget\":true}\n");
  EXPECT_EQ(reported({keyDown(0)}, 41), "{\"input\":\"key\",\"touchesTarget\":false}\n");
}

TEST(reportInput, never_finds_a_movement_on_the_target) {
  EXPECT_EQ(reported({towards(41, move(5))}, 41),
            "{\"input\":\"pointer\",\"touchesTarget\":false}\n");
}

TEST(reportInput, names_the_application_in_front_after_return) {
  EXPECT_EQ(reported({keyDown(36), keyDown(76)}, std::nullopt),
            "{\"input\":\"key\",\"submit\":\"com.example.browser\"}\n"
            "{\"input\":\"key\",\"submit\":\"com.example.browser\"}\n");
  EXPECT_EQ(reported({keyDown(36)}, 41),
            "{\"input\":\"key\",\"submit\":\"com.example.browser\",\"touchesTarget\":false}\n");
  EXPECT_EQ(reported({keyDown(36)}, 40, "app Browser pid 40 unbundled frontmost\n"),
            "{\"input\":\"key\",\"touchesTarget\":true}\n");
}

TEST(reportInput, names_none_after_return_with_shift) {
  EXPECT_EQ(reported({keyDown(36, 0x20000), keyDown(36, 0x20000)}, 40),
            "{\"input\":\"key\",\"touchesTarget\":true}\n"
            "{\"input\":\"key\",\"touchesTarget\":true}\n");
  EXPECT_EQ(reported({keyDown(36, 0x20000), keyDown(36, 0x20000)}, 41),
            "{\"input\":\"key\",\"touchesTarget\":false}\n");
}

TEST(reportInput, throttles_what_does_not_touch_the_target) {
  EXPECT_EQ(reported({keyDown(0), move(5), eventOf(EventType::leftMouseDown, {50, 50})}, 41),
            "{\"input\":\"key\",\"touchesTarget\":false}\n");
  EXPECT_EQ(reported({keyDown(0), eventOf(EventType::leftMouseDown, {200, 200}), keyDown(0)}, 41),
            "{\"input\":\"key\",\"touchesTarget\":false}\n"
            "{\"input\":\"pointer\",\"touchesTarget\":true}\n");
}

TEST(reportInput, goes_on_after_more_than_a_quarter_of_a_second) {
  TestMac mac(watcherDesk);
  std::size_t lines = 0;
  const Result run = runInside(mac, [] {
    for (int i = 0; i < 20; ++i) {
      reportInput(keyDown(0));
      loop::sleepMicroseconds(100'000);
    }
  });
  for (const char c : run.output) lines += c == '\n' ? 1 : 0;
  EXPECT_EQ(lines, 7U);  // every third of 20
  mac.takeViolations();
}

TEST(reportInput, counts_the_throttle_from_the_last_report_of_any_kind) {
  TestMac mac(watcherDesk);
  runInside(mac, [] {
    globals().watchedInputPID = 40;
    reportInput(keyDown(0));
    const double last = globals().lastInputReport;
    EXPECT_GT(last, 0);
    reportInput(move(5));
    EXPECT_EQ(globals().lastInputReport, last);
  });
  mac.takeViolations();
}

TEST(reportInput, says_nothing_of_the_tools_own_input_and_of_a_trembling_pointer) {
  tap::Event own = keyDown(36);
  own.sourceUserData = ownEventTag;
  EXPECT_EQ(reported({own, move(1)}, 41), "");
}

TEST(reportInput, of_a_notice_waits_for_the_tap_that_it_is_about) {
  TestMac mac(watcherDesk);
  const Result run = runInside(mac, [] {
    tap::Event notice;
    notice.type = tap::disabledByTimeout;
    reportInput(notice);
  });
  EXPECT_EQ(run.calls, std::vector<std::string>{});
}

}  // namespace
}  // namespace driver
