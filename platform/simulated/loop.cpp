#include "platform/loop.h"

#include <cstdlib>
#include <utility>

#include "platform/simulated/channel.h"
#include "platform/simulated/process_state.h"

namespace loop {

using platform::Function;
using simulated::ask;
using simulated::state;

namespace {

std::int64_t keepWork(std::function<void()> work, std::int64_t count) {
  const std::lock_guard lock(state().mutex);
  const std::int64_t number = ++state().lastWork;
  state().works[number] = {std::move(work), count};
  return number;
}

}  // namespace

std::uint64_t uptimeNanoseconds() { return simulated::askFor<std::uint64_t>(Function::uptime); }

double secondsSince1970() { return simulated::askFor<double>(Function::calendar); }

void sleepMicroseconds(std::uint32_t microseconds) { ask(Function::sleep, microseconds); }

/// While nothing else is for the main flow to do, the task waits for it to park and runs inside it:
/// such a run has one thread.
void startTask(std::function<void()> task) {
  if (!state().mainIsServed) {
    state().task = std::move(task);
    return;
  }
  state().hasFlows = true;
  simulated::channel().startFlow(std::move(task));
}

// Nothing is set aside here.
void doRound(const std::function<void()>& work) { work(); }

void park() {
  if (const auto task = std::exchange(state().task, nullptr)) task();
  for (;;) simulated::serveMainFlow();
}

void suspend() {
  ask(Function::suspend);
  std::abort();  // nothing wakes it
}

void postToMain(std::function<void()> work) {
  ask(Function::postToMain, keepWork(std::move(work), 1));
}

void scheduleOnMain(std::uint32_t microseconds, std::int64_t count, std::function<void()> work) {
  if (count < 1) return;
  ask(Function::scheduleOnMain, keepWork(std::move(work), count), microseconds, count);
}

}  // namespace loop
