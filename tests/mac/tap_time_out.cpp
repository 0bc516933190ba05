// Makes a tap for keys that does not answer for eight seconds, posts F20, which does nothing, into
// the session, and looks when the system disables the tap. All keys wait for one that filters.
#include <CoreGraphics/CoreGraphics.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "support/answer.h"
#include "support/system.h"
#include "support/taps.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int silentMilliseconds = 8'000;
constexpr long long never = -1;

struct Course {
  CFMachPortRef port = nullptr;
  Clock::time_point start;
  std::atomic<bool> isHeld = false;
  std::atomic<long long> disabledAfter = never;
  std::atomic<long long> toldAfter = never;

  long long now() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
  }
};

CGEventRef holdFirst(CGEventTapProxy, CGEventType type, CGEventRef event, void* info) {
  Course& course = *static_cast<Course*>(info);
  if (type == kCGEventTapDisabledByTimeout) {
    course.toldAfter = course.now();
  } else if (!course.isHeld.exchange(true)) {
    course.start = Clock::now();
    probe::sleepMilliseconds(silentMilliseconds);
  }
  return event;
}

/// From another thread, since the tap's own is held up.
void watch(Course& course) {
  constexpr int settleMilliseconds = 500;
  constexpr int pauseMilliseconds = 10;
  probe::sleepMilliseconds(settleMilliseconds);
  probe::postIdleKey(0);
  while (!course.isHeld) probe::sleepMilliseconds(pauseMilliseconds);
  while (course.now() < silentMilliseconds) {
    if (!CGEventTapIsEnabled(course.port)) {
      course.disabledAfter = course.now();
      return;
    }
    probe::sleepMilliseconds(pauseMilliseconds);
  }
}

/// Has the tap be asked, and watches until its silence is over. Whether it was made.
bool runCourse(Course& course, CGEventTapOptions options) {
  constexpr double courseSeconds = 12;
  course.port = CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, options, probe::keyMask,
                                 holdFirst, &course);
  if (course.port == nullptr) return false;
  CFRunLoopSourceRef source = CFMachPortCreateRunLoopSource(kCFAllocatorDefault, course.port, 0);
  CFRunLoopAddSource(CFRunLoopGetMain(), source, kCFRunLoopCommonModes);
  std::thread([&course] { watch(course); }).detach();
  probe::runLoop(courseSeconds);
  CFMachPortInvalidate(course.port);
  return true;
}

/// A tap that filters is disabled after about a second; one that listens is not.
bool isAsAssumed(const Course& course, bool filters) {
  constexpr long long assumedMilliseconds = 1'000;
  if (!filters) return course.disabledAfter == never && course.toldAfter == never;
  return course.disabledAfter >= assumedMilliseconds / 2 &&
         course.disabledAfter <= 2 * assumedMilliseconds && course.toldAfter != never;
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  const bool filters = assumption == "tap-time-out";
  if (!filters && assumption != "slow-listening-taps")
    return probe::notShown(assumption, "it is not asked here");
  CGMainDisplayID();
  static Course course;
  if (!runCourse(course, filters ? kCGEventTapOptionDefault : kCGEventTapOptionListenOnly))
    return probe::notShown(assumption, "no tap was made");
  probe::Evidence evidence;
  evidence.add("it was asked", course.isHeld.load())
      .add("disabled after ms", course.disabledAfter.load())
      .add("told after ms, which is when it answers at the earliest", course.toldAfter.load());
  if (!course.isHeld) return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(assumption, probe::verdictOf(isAsAssumed(course, filters)), evidence);
}
