// Locks the screen, and writes down what the function returned and when the session's dictionary
// said so. Nothing unlocks it afterwards but the user, so the second question finds it locked.
#include <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>

#include <chrono>
#include <string>

#include "support/answer.h"
#include "support/system.h"

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

}  // namespace

int main(int count, char** words) {
  constexpr long long patienceMilliseconds = 10'000;
  const std::string assumption = probe::asked(count, words);
  CGMainDisplayID();
  void* const login =
      dlopen("/System/Library/PrivateFrameworks/login.framework/Versions/Current/login", RTLD_LAZY);
  const auto lock = reinterpret_cast<int (*)()>(
      login == nullptr ? nullptr : dlsym(login, "SACLockScreenImmediate"));
  if (lock == nullptr) return probe::notShown(assumption, "SACLockScreenImmediate is missing");
  const bool lockedBefore = isLocked();
  const Clock::time_point start = Clock::now();
  const int status = lock();
  const long long returned = millisecondsSince(start);
  const long long locked = lockedAfter(start, patienceMilliseconds);
  probe::Evidence evidence;
  evidence.add("locked before", lockedBefore)
      .add("status", status)
      .add("returned after ms", returned)
      .add("the session says locked after ms", locked);
  if (assumption == "locked-key" && status == 0)
    return probe::answer(assumption, probe::verdictOf(locked >= 0), evidence);
  if (assumption != "lock-at-once" || lockedBefore)
    return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(assumption, probe::verdictOf(status == 0 && locked >= 0), evidence);
}
