#include <dispatch/dispatch.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "platform/loop.h"

namespace loop {

namespace {

using Work = std::function<void()>;

constexpr std::uint64_t nanosecondsPerMicrosecond = 1'000;
constexpr std::uint64_t noLeeway = 0;

struct Repetition {
  dispatch_source_t timer;
  std::int64_t left;
  bool makesUp;  // for firings that were missed
  Work work;
};

void doWork(void* context) {
  const std::unique_ptr<Work> work(static_cast<Work*>(context));
  (*work)();
}

void forget(void* context) { delete static_cast<Repetition*>(context); }

// One call may stand for several firings, when the main thread was busy.
void repeat(void* context) {
  auto* repetition = static_cast<Repetition*>(context);
  const std::uint64_t fired = dispatch_source_get_data(repetition->timer);
  const std::uint64_t due = repetition->makesUp ? fired : 1;
  for (std::uint64_t i = 0; i < due && repetition->left > 0; ++i) {
    --repetition->left;
    repetition->work();
  }
  if (repetition->left > 0) return;
  dispatch_source_cancel(repetition->timer);
  dispatch_release(repetition->timer);
}

void start(std::uint32_t microseconds, std::int64_t count, bool makesUp, Work work) {
  const std::uint64_t interval =
      std::max(microseconds * nanosecondsPerMicrosecond, std::uint64_t{1});
  const dispatch_source_t timer =
      dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, dispatch_get_main_queue());
  dispatch_set_context(timer, new Repetition{timer, count, makesUp, std::move(work)});
  dispatch_set_finalizer_f(timer, forget);
  dispatch_source_set_event_handler_f(timer, repeat);
  dispatch_source_set_timer(timer,
                            dispatch_time(DISPATCH_TIME_NOW, static_cast<std::int64_t>(interval)),
                            interval, noLeeway);
  dispatch_activate(timer);
}

// Made before the first round, and never destroyed.
const Semaphore& roundsDone() {
  static const auto& done = *new Semaphore(makeSemaphore());
  return done;
}

}  // namespace

void postToMain(std::function<void()> work) {
  dispatch_async_f(dispatch_get_main_queue(), new Work(std::move(work)), doWork);
}

void scheduleOnMain(std::uint32_t microseconds, std::int64_t count, std::function<void()> work) {
  if (count > 0) start(microseconds, count, true, std::move(work));
}

void goRounds(std::uint32_t microseconds, std::function<void()> round) {
  start(microseconds, std::numeric_limits<std::int64_t>::max(), false, [round = std::move(round)] {
    round();
    signal(roundsDone());
  });
}

bool awaitRound(std::uint32_t microseconds) { return waitWithin(roundsDone(), microseconds); }

}  // namespace loop
