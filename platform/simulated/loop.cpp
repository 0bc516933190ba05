#include "platform/loop.h"

#include <cstdlib>
#include <utility>

#include "platform/simulated/channel.h"

namespace loop {

namespace {

/// The task waits for the main flow to park and then runs inside it: a one-shot run has one thread.
std::function<void()>& pendingTask() {
  static std::function<void()> task;
  return task;
}

}  // namespace

std::uint64_t uptimeNanoseconds() {
  return simulated::askFor<std::uint64_t>(platform::Function::uptime);
}

void sleepMicroseconds(std::uint32_t microseconds) {
  simulated::ask(platform::Function::sleep, microseconds);
}

void startTask(std::function<void()> task) { pendingTask() = std::move(task); }

void park() {
  if (const auto task = std::exchange(pendingTask(), nullptr)) task();
  // Only a main flow that nothing can ever wake gets here.
  std::abort();
}

}  // namespace loop
