#include <dispatch/dispatch.h>

#include <memory>

#include "platform/loop.h"

namespace loop {

namespace {

constexpr std::int64_t nanosecondsPerMicrosecond = 1'000;

dispatch_semaphore_t native(const Semaphore& semaphore) {
  return static_cast<dispatch_semaphore_t>(semaphore.get());
}

}  // namespace

// Never released: another thread may wait for it while the last user of it goes.
Semaphore makeSemaphore() {
  return Semaphore(std::shared_ptr<void>(dispatch_semaphore_create(0), [](void*) {}));
}

void signal(const Semaphore& semaphore) { dispatch_semaphore_signal(native(semaphore)); }

void wait(const Semaphore& semaphore) {
  dispatch_semaphore_wait(native(semaphore), DISPATCH_TIME_FOREVER);
}

bool waitWithin(const Semaphore& semaphore, std::uint32_t microseconds) {
  const dispatch_time_t deadline =
      dispatch_time(DISPATCH_TIME_NOW, microseconds * nanosecondsPerMicrosecond);
  return dispatch_semaphore_wait(native(semaphore), deadline) == 0;
}

}  // namespace loop
