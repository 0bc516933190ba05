// The race detector does not know this way to lock a mutex, which std::timed_mutex uses. It knows
// the other one, which counts from another beginning.
#include <pthread.h>
#include <time.h>

#include "platform/macos/standins/unobserved.h"

#ifdef STANDINS_CHECKED_FOR_RACES

namespace {

constexpr long nanosecondsPerSecond = 1'000'000'000;

long long nanoseconds(const timespec& time) {
  return static_cast<long long>(time.tv_sec) * nanosecondsPerSecond + time.tv_nsec;
}

}  // namespace

extern "C" int pthread_mutex_clocklock(pthread_mutex_t* mutex, clockid_t clock,
                                       const timespec* deadline) {
  timespec now = {};
  clock_gettime(clock, &now);
  const long long left = nanoseconds(*deadline) - nanoseconds(now);
  clock_gettime(CLOCK_REALTIME, &now);
  const long long end = nanoseconds(now) + left;
  const timespec converted = {end / nanosecondsPerSecond, end % nanosecondsPerSecond};
  return pthread_mutex_timedlock(mutex, &converted);
}

#endif
