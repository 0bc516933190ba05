#include "simulator/scheduler.h"

#include <algorithm>

namespace simulator {

Scheduler::Flow Scheduler::join(Kind kind) {
  flows_.emplace(++lastFlow_, kind);
  return lastFlow_;
}

void Scheduler::run(Flow flow) {
  forgetWait(flow);
  running_.insert(flow);
}

void Scheduler::wait(Flow flow, Microseconds due) {
  running_.erase(flow);
  blocked_.erase(flow);
  waits_.emplace(due, flow);
}

void Scheduler::block(Flow flow, const Limits& limits) {
  running_.erase(flow);
  blocked_.insert_or_assign(flow, limits);
}

void Scheduler::goOutside(Flow flow) { running_.erase(flow); }

void Scheduler::leave(Flow flow) {
  flows_.erase(flow);
  running_.erase(flow);
  forgetWait(flow);
}

void Scheduler::forgetWait(Flow flow) {
  blocked_.erase(flow);
  const auto wait = std::find_if(waits_.begin(), waits_.end(),
                                 [&](const auto& each) { return each.second == flow; });
  if (wait != waits_.end()) waits_.erase(wait);
}

std::optional<Scheduler::Flow> Scheduler::wake(Microseconds now, std::optional<Flow> preferred) {
  if (!mayWake() || waits_.empty()) return std::nullopt;
  auto wait = waits_.begin();
  if (preferred) {
    const auto wanted = std::find_if(waits_.begin(), waits_.end(), [&](const auto& each) {
      return each.second == *preferred && each.first <= now;
    });
    if (wanted != waits_.end()) wait = wanted;
  }
  const auto [due, flow] = *wait;
  if (due > now) return std::nullopt;
  waits_.erase(wait);
  // A watcher is told and is done: were it running, virtual time would wait for it.
  if (flows_.at(flow) == Kind::process) running_.insert(flow);
  return flow;
}

std::optional<Microseconds> Scheduler::nextDue() const {
  std::optional<Microseconds> next;
  if (!waits_.empty()) next = waits_.begin()->first;
  for (const auto& [flow, limits] : blocked_) next = earliest({next, limits.deadline});
  return next;
}

std::optional<Microseconds> Scheduler::nextRound() const {
  std::optional<Microseconds> next;
  for (const auto& [flow, limits] : blocked_) next = earliest({next, limits.round});
  return next;
}

}  // namespace simulator
