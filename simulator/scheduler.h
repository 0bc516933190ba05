#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "simulator/world/world.h"

namespace simulator {

/// Decides who waits and who may go on. It holds no clock, no answers and no calls.
///
/// A flow is whatever takes turns: a thread of a process that uses the Mac runs until it waits; a
/// watcher only ever waits. A flow waits until a time, or it is blocked until something happens, or
/// it is outside, busy with something that is not the Mac's. In real time every wait ends when it
/// is due. In virtual time one flow runs at a time, and a wait ends only while none runs. Equal
/// times go by the order of joining.
class Scheduler {
 public:
  enum class Time { real, virtualTime };
  enum class Kind { process, watcher };
  using Flow = std::size_t;

  explicit Scheduler(Time time) : time_(time) {}

  /// A flow joins. It neither runs nor waits yet.
  Flow join(Kind kind);

  /// The flow counts as running from now on: it has been promised a turn, or is about to arrive.
  void run(Flow flow);

  /// The flow waits until `due`. It must not be waiting already.
  void wait(Flow flow, Microseconds due);

  /// Until when a flow waits for something to happen: at the latest, and by a round that goes on
  /// for ever.
  struct Limits {
    std::optional<Microseconds> deadline = std::nullopt;
    std::optional<Microseconds> round = std::nullopt;
  };

  /// The flow waits for something to happen.
  void block(Flow flow, const Limits& limits);

  /// The flow is busy elsewhere: it neither runs nor waits.
  void goOutside(Flow flow);

  /// The flow has gone, with its wait. Idempotent.
  void leave(Flow flow);

  /// The next wait that ends, `now` being the present; a process runs from then on. `preferred`
  /// goes before others that could go on as well.
  std::optional<Flow> wake(Microseconds now, std::optional<Flow> preferred = std::nullopt);

  /// The flows that wait for something to happen, in the order of joining, with their limits.
  const std::map<Flow, Limits>& blocked() const { return blocked_; }

  /// The earliest time at which a wait ends or a deadline passes; and the earliest of rounds.
  std::optional<Microseconds> nextDue() const;
  std::optional<Microseconds> nextRound() const;

  /// True when a wait may end at all.
  bool mayWake() const { return time_ == Time::real || running_.empty(); }

  Time time() const { return time_; }

 private:
  void forgetWait(Flow flow);

  Time time_;
  std::map<Flow, Kind> flows_;
  std::set<std::pair<Microseconds, Flow>> waits_;
  std::map<Flow, Limits> blocked_;
  std::set<Flow> running_;
  Flow lastFlow_ = 0;
};

}  // namespace simulator
