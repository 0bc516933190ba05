#include "simulator/companion/scheduler.h"

#include <algorithm>

namespace companion {

Scheduler::Flow Scheduler::join(Kind kind) {
  flows_.emplace(++lastFlow_, kind);
  return lastFlow_;
}

void Scheduler::wait(Flow flow, Microseconds due) {
  running_.erase(flow);
  waits_.emplace(due, flow);
}

void Scheduler::leave(Flow flow) {
  flows_.erase(flow);
  running_.erase(flow);
  const auto wait = std::find_if(waits_.begin(), waits_.end(),
                                 [&](const auto& each) { return each.second == flow; });
  if (wait != waits_.end()) waits_.erase(wait);
}

std::optional<Scheduler::Wake> Scheduler::wake(Microseconds now) {
  if (waits_.empty()) return std::nullopt;
  const auto [due, flow] = *waits_.begin();
  const bool mayEnd = time_ == Time::real ? due <= now : running_.empty();
  if (!mayEnd) return std::nullopt;
  waits_.erase(waits_.begin());
  if (flows_.at(flow) == Kind::process) running_.insert(flow);
  return Wake{due, flow};
}

std::optional<Microseconds> Scheduler::nextDue() const {
  if (waits_.empty()) return std::nullopt;
  return waits_.begin()->first;
}

}  // namespace companion
