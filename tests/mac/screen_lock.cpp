// Locks the screen, and writes down what the function returned and when the session's dictionary
// said so, and whether a tap is told of keys then. Nothing unlocks it afterwards but the user, so
// the second question finds it locked: what cannot be told then is to be asked alone.
#include <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "support/answer.h"
#include "support/system.h"
#include "support/taps.h"

namespace {

using Clock = std::chrono::steady_clock;

bool isLocked() {
  CFDictionaryRef session = CGSessionCopyCurrentDictionary();
  if (session == nullptr) return false;
  const void* value = nullptr;
  const bool locked =
      CFDictionaryGetValueIfPresent(session, CFSTR("CGSSessionScreenIsLocked"), &value) != 0 &&
      CFEqual(value, kCFBooleanTrue) != 0;
  CFRelease(session);
  return locked;
}

long long millisecondsSince(Clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

/// When the session says that it is locked, after the start; -1 when it does not within so long.
long long lockedAfter(Clock::time_point start, long long millisecondsMax) {
  constexpr int pauseMilliseconds = 5;
  while (millisecondsSince(start) < millisecondsMax) {
    if (isLocked()) return millisecondsSince(start);
    probe::sleepMilliseconds(pauseMilliseconds);
  }
  return -1;
}

/// Whether a tap is told of the key that does nothing, posted into the session.
long long keysTold(probe::Tap& tap) {
  constexpr std::int64_t tag = 0x6D616373;
  constexpr double waitSeconds = 0.7;
  probe::postIdleKey(tag);
  const auto events = tap.eventsWithin(waitSeconds);
  return std::count_if(events.begin(), events.end(),
                       [](const probe::SeenEvent& each) { return each.tag == tag; });
}

/// What came of a lock.
struct Course {
  bool lockedBefore = false;
  int status = 0;
  long long returned = 0;
  long long locked = 0;

  probe::Evidence evidence() const {
    return probe::Evidence()
        .add("locked before", lockedBefore)
        .add("status", status)
        .add("returned after ms", returned)
        .add("the session says locked after ms", locked);
  }
};

Course runCourse(int (*lock)()) {
  constexpr long long patienceMilliseconds = 10'000;
  Course course;
  course.lockedBefore = isLocked();
  const Clock::time_point start = Clock::now();
  course.status = lock();
  course.returned = millisecondsSince(start);
  course.locked = lockedAfter(start, patienceMilliseconds);
  return course;
}

int tapsWhileLocked(const std::string& assumption, int (*lock)()) {
  probe::Tap tap(kCGEventTapOptionListenOnly, probe::keyMask);
  const long long before = keysTold(tap);
  const Course course = runCourse(lock);
  const long long after = keysTold(tap);
  const bool canTell = !course.lockedBefore && course.locked >= 0 && before == 2;
  return probe::answer(assumption,
                       canTell ? probe::verdictOf(after == 0) : probe::Verdict::notShown,
                       course.evidence()
                           .add("a tap was made", tap.isMade())
                           .add("posted keys that it was told of before, of 2", before)
                           .add("while locked", after));
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  CGMainDisplayID();
  void* const login =
      dlopen("/System/Library/PrivateFrameworks/login.framework/Versions/Current/login", RTLD_LAZY);
  const auto lock = reinterpret_cast<int (*)()>(
      login == nullptr ? nullptr : dlsym(login, "SACLockScreenImmediate"));
  if (lock == nullptr) return probe::notShown(assumption, "SACLockScreenImmediate is missing");
  if (assumption == "taps-while-locked") return tapsWhileLocked(assumption, lock);
  const Course course = runCourse(lock);
  if (assumption == "locked-key" && course.status == 0)
    return probe::answer(assumption, probe::verdictOf(course.locked >= 0), course.evidence());
  if (assumption != "lock-at-once" || course.lockedBefore)
    return probe::answer(assumption, probe::Verdict::notShown, course.evidence());
  return probe::answer(assumption, probe::verdictOf(course.status == 0 && course.locked >= 0),
                       course.evidence());
}
