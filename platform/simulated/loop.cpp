#include "platform/loop.h"

#include <cstdlib>
#include <utility>

#include "platform/simulated/channel.h"
#include "platform/simulated/loop.h"
#include "platform/simulated/process_state.h"

namespace simulated {

using platform::Function;
using platform::ItemKind;
using platform::WireItem;

namespace {

// Handlers are copied under the lock and called without it: they make calls, and may post more
// work.
std::function<void()> takeWork(std::int64_t number) {
  const std::lock_guard lock(state().mutex);
  const auto work = state().works.find(number);
  if (work == state().works.end()) return nullptr;
  std::function<void()> body = work->second.body;
  if (--work->second.left == 0) state().works.erase(work);
  return body;
}

tap::Handler tapHandler(std::int64_t number) {
  const std::lock_guard lock(state().mutex);
  const auto handler = state().tapHandlers.find(number);
  return handler == state().tapHandlers.end() ? nullptr : handler->second;
}

void serveTap(const WireItem& item) {
  const tap::Handler handler = tapHandler(item.number);
  if (!handler) return;
  const tap::Verdict verdict = handler(item.event);
  // A notice is no event: nothing waits for what is made of it.
  if (item.serial == 0) return;
  ask(Function::tapVerdict, item.number, item.serial, verdict == tap::Verdict::pass);
}

void serve(const WireItem& item) {
  switch (item.kind) {
    case ItemKind::work:
      if (const auto work = takeWork(item.number)) work();
      break;
    case ItemKind::signal:
      if (state().signalHandler) state().signalHandler(static_cast<process::Signal>(item.number));
      break;
    case ItemKind::tapEvent:
      serveTap(item);
      break;
    case ItemKind::terminationRequest:
      if (state().terminationHandler) state().terminationHandler();
      break;
    case ItemKind::screenChange:
      if (state().screenChangeHandler) state().screenChangeHandler();
      break;
    case ItemKind::loopEnd:
      break;
  }
}

}  // namespace

void serveMainFlow() {
  for (;;) {
    const auto item = askFor<WireItem>(Function::nextItem);
    if (item.kind == ItemKind::loopEnd) return;
    serve(item);
  }
}

}  // namespace simulated

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

// Its work is never forgotten: what is left of it does not come to 0.
void goRounds(std::uint32_t microseconds, std::function<void()> round) {
  ask(Function::goRounds, keepWork(std::move(round), 0), microseconds);
}

bool awaitRound(std::uint32_t microseconds) {
  return simulated::askFor<bool>(Function::awaitRound, microseconds);
}

Semaphore makeSemaphore() {
  const std::lock_guard lock(state().mutex);
  return simulated::makeHandle<Semaphore>(++state().lastSemaphore);
}

void signal(const Semaphore& semaphore) {
  ask(Function::signalSemaphore, simulated::objectOf<std::int64_t>(semaphore));
}

void wait(const Semaphore& semaphore) {
  ask(Function::waitForSemaphore, simulated::objectOf<std::int64_t>(semaphore),
      std::optional<std::uint32_t>());
}

bool waitWithin(const Semaphore& semaphore, std::uint32_t microseconds) {
  return simulated::askFor<bool>(Function::waitForSemaphore,
                                 simulated::objectOf<std::int64_t>(semaphore),
                                 std::optional(microseconds));
}

}  // namespace loop
