#include <gtest/gtest.h>

#include <vector>

#include "guard/guard_tap.h"
#include "guard/screen_lock.h"
#include "main/globals.h"
#include "platform/quartz.h"
#include "platform/simulated/channel.h"
#include "tests/costs/footprint/allocations.h"
#include "tests/support/inside.h"

/// What the guard's tap does before it locks, while the user's input waits: nothing but locking.
namespace {

using driver::Datum;
using platform::Function;
using testing_support::Mode;
using testing_support::TestMac;

/// Passes calls on, and notes how much had been taken from the free store when the lock was called,
/// and what was called before.
class LockWatch : public platform::Channel {
 public:
  LockWatch() : underneath_(simulated::channel()) { simulated::setChannel(this); }
  ~LockWatch() override { simulated::setChannel(&underneath_); }

  Datum call(platform::Call call) override {
    if (call.function == Function::lockScreen) {
      if (!isLocked) allocations = footprint::countedAllocations().count;
      isLocked = true;
    }
    const footprint::Uncounted uncounted;
    if (!isLocked) callsBefore.push_back(call.function);
    return underneath_.call(std::move(call));
  }

  platform::Pid ownPid() const override { return underneath_.ownPid(); }
  void startFlow(std::function<void()> body) override { underneath_.startFlow(std::move(body)); }
  void watchSignals(const std::vector<int>& numbers) override { underneath_.watchSignals(numbers); }
  void awaitEndingSignal(const std::vector<int>& numbers,
                         std::function<void(int)> handler) override {
    underneath_.awaitEndingSignal(numbers, std::move(handler));
  }
  bool keepsOutput() const override { return underneath_.keepsOutput(); }
  void exit(int status) override {
    underneath_.exit(status);
    std::abort();
  }
  void dieBySignal(int signal) override {
    underneath_.dieBySignal(signal);
    std::abort();
  }

  bool isLocked = false;
  std::size_t allocations = 0;
  std::vector<Function> callsBefore;

 private:
  platform::Channel& underneath_;
};

struct Seen {
  tap::Verdict verdict = tap::Verdict::pass;
  bool isLocked = false;
  std::size_t allocations = 0;
  std::vector<Function> callsBefore;
};

/// What the callback makes of an event when grace, if any, has run out.
Seen callback(const tap::Event& event, const testing_support::Environment& environment = {}) {
  TestMac mac("display 1 1440x900", {}, Mode::direct);
  Seen seen;
  testing_support::runInside(
      mac,
      [&] {
        driver::prepareScreenLock();
        if (driver::globals().guardGrace > 0) driver::globals().guardGraceUntil = 0;
        LockWatch watch;
        footprint::countAllocations();
        seen.verdict = driver::guardVerdict(event);
        if (!watch.isLocked) watch.allocations = footprint::countedAllocations().count;
        seen.isLocked = watch.isLocked;
        seen.allocations = watch.allocations;
        seen.callsBefore = watch.callsBefore;
      },
      environment);
  return seen;
}

tap::Event eventOf(quartz::EventType type) {
  tap::Event event;
  event.type = static_cast<std::uint32_t>(type);
  event.deltaX = 5;
  return event;
}

constexpr quartz::EventType watched[] = {
    quartz::EventType::leftMouseDown,  quartz::EventType::rightMouseDown,
    quartz::EventType::otherMouseDown, quartz::EventType::mouseMoved,
    quartz::EventType::keyDown,        quartz::EventType::scrollWheel};

TEST(guard_callback, allocates_and_calls_nothing_before_it_locks) {
  for (const quartz::EventType type : watched) {
    const Seen seen = callback(eventOf(type));
    EXPECT_TRUE(seen.isLocked);
    EXPECT_EQ(seen.verdict, tap::Verdict::swallow);
    EXPECT_EQ(seen.allocations, 0U);
    EXPECT_TRUE(seen.callsBefore.empty());
  }
}

TEST(guard_callback, asks_only_the_clocks_once_grace_has_run_out) {
  for (const quartz::EventType type : watched) {
    const Seen seen = callback(eventOf(type), {{"ZENTROVE_COVER_GRACE", "10"}});
    EXPECT_TRUE(seen.isLocked);
    EXPECT_EQ(seen.allocations, 0U);
    EXPECT_EQ(seen.callsBefore, (std::vector{Function::calendar, Function::uptime}));
  }
}

TEST(guard_callback, lets_the_tools_own_input_pass_for_nothing) {
  for (const quartz::EventType type : watched) {
    tap::Event event = eventOf(type);
    event.sourceUserData = driver::ownEventTag;
    const Seen seen = callback(event);
    EXPECT_EQ(seen.verdict, tap::Verdict::pass);
    EXPECT_FALSE(seen.isLocked);
    EXPECT_EQ(seen.allocations, 0U);
    EXPECT_TRUE(seen.callsBefore.empty());
  }
}

}  // namespace
