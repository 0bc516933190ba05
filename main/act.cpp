#include "main/act.h"

#include "main/globals.h"
#include "platform/loop.h"

namespace driver {

namespace {

constexpr std::uint32_t pollMicroseconds = 1'000;

/// True when the act has begun, false when the process is ending.
bool mayBegin() {
  const std::lock_guard lock(globals().mutex);
  if (globals().ending) return false;
  ++globals().actsUnderWay;
  return true;
}

bool actsAreUnderWay() {
  const std::lock_guard lock(globals().mutex);
  return globals().actsUnderWay > 0;
}

}  // namespace

Act::Act() {
  if (!mayBegin()) loop::suspend();
}

Act::Act(const std::lock_guard<std::mutex>& /*held*/) { ++globals().actsUnderWay; }

Act::~Act() {
  const std::lock_guard lock(globals().mutex);
  --globals().actsUnderWay;
}

void awaitActs() {
  std::uint32_t waited = 0;
  for (; actsAreUnderWay() && waited < endingMicroseconds; waited += pollMicroseconds) {
    loop::sleepMicroseconds(pollMicroseconds);
  }
}

}  // namespace driver
