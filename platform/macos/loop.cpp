#include "platform/loop.h"

#include <CoreFoundation/CoreFoundation.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

namespace loop {

namespace {

constexpr std::uint32_t microsecondsPerSecond = 1'000'000;
constexpr long nanosecondsPerMicrosecond = 1'000;
constexpr double nanosecondsPerSecond = 1e9;

}  // namespace

std::uint64_t uptimeNanoseconds() { return clock_gettime_nsec_np(CLOCK_UPTIME_RAW); }

double secondsSince1970() {
  timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / nanosecondsPerSecond;
}

void sleepMicroseconds(std::uint32_t microseconds) {
  timespec rest = {};
  rest.tv_sec = microseconds / microsecondsPerSecond;
  rest.tv_nsec =
      static_cast<long>(microseconds % microsecondsPerSecond) * nanosecondsPerMicrosecond;
  while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
  }
}

// In the run loop, which also serves the main dispatch queue. dispatch_main() would end the main
// thread: its run loop would never turn again, and with it the state of running applications would
// freeze and event taps would fall silent.
void park() {
  for (;;) CFRunLoopRun();
}

void suspend() {
  for (;;) pause();
}

}  // namespace loop
