#include "platform/macos/standins/system_thread.h"

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "platform/macos/standins/dispatch.h"

namespace standins {

namespace {

using Work = std::function<void()>;
using Lock = std::unique_lock<std::mutex>;

struct Due {
  std::uint64_t time;
  Work work;
};

struct System {
  std::mutex access;
  std::condition_variable changed;
  std::vector<Due> due;
  std::vector<std::thread> threads;
  int busy = 0;  // of the threads
  LateAnswer lateAnswer = LateAnswer::none;
};

System& theSystem() {
  static auto& system = *new System;
  return system;
}

// Takes out the next thing that is due at this time at the latest. Time passes to then.
std::optional<Work> takeDue(std::uint64_t deadline) {
  auto& due = theSystem().due;
  const auto next = std::min_element(due.begin(), due.end(),
                                     [](const Due& a, const Due& b) { return a.time < b.time; });
  if (next == due.end() || next->time > deadline) return std::nullopt;
  if (next->time > now()) passNanoseconds(next->time - now());
  Work work = std::move(next->work);
  due.erase(next);
  return work;
}

void carryOut(Work work) {
  work();
  work = nullptr;  // with all that it holds
  const Lock lock(theSystem().access);
  --theSystem().busy;
  theSystem().changed.notify_all();
}

void begin(Work work) {
  ++theSystem().busy;
  theSystem().threads.emplace_back(carryOut, std::move(work));
}

void finish(Lock& lock) {
  theSystem().changed.wait(lock, [] { return theSystem().busy == 0; });
  std::vector<std::thread> ended = std::exchange(theSystem().threads, {});
  lock.unlock();
  for (std::thread& each : ended) each.join();
  lock.lock();
}

// A wait has ended in vain.
void answerLate(Lock& lock) {
  const LateAnswer answer = std::exchange(theSystem().lateAnswer, LateAnswer::none);
  if (answer == LateAnswer::none) return;
  std::optional<Work> work = takeDue(UINT64_MAX);
  if (!work) return;
  begin(std::move(*work));
  if (answer == LateAnswer::justTooLate) finish(lock);
}

}  // namespace

void later(std::uint64_t nanoseconds, Work work) {
  const Lock lock(theSystem().access);
  theSystem().due.push_back({now() + nanoseconds, std::move(work)});
}

void setLateAnswer(LateAnswer answer) {
  const Lock lock(theSystem().access);
  theSystem().lateAnswer = answer;
}

bool letSystemDoNext() {
  Lock lock(theSystem().access);
  finish(lock);
  std::optional<Work> work = takeDue(UINT64_MAX);
  if (!work) return false;
  begin(std::move(*work));
  finish(lock);
  return true;
}

void beginNext() {
  const Lock lock(theSystem().access);
  begin(takeDue(UINT64_MAX).value());
}

void letSystemFinish() {
  Lock lock(theSystem().access);
  finish(lock);
}

bool waitForSystem(std::uint64_t deadline, const std::function<bool()>& isOver) {
  constexpr std::uint64_t forEver = UINT64_MAX;
  Lock lock(theSystem().access);
  while (!isOver()) {
    if (theSystem().busy > 0) {
      theSystem().changed.wait(lock);
    } else if (std::optional<Work> work = takeDue(deadline == forEver ? deadline - 1 : deadline)) {
      begin(std::move(*work));
    } else if (deadline == forEver) {
      std::abort();  // nobody will ever signal
    } else {
      if (deadline > now()) passNanoseconds(deadline - now());
      answerLate(lock);
      return false;
    }
  }
  return true;
}

void signal(const std::function<void()>& change) {
  const Lock lock(theSystem().access);
  change();
  theSystem().changed.notify_all();
}

}  // namespace standins
