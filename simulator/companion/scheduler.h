#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "simulator/world.h"

namespace companion {

using simulator::Microseconds;

/// Decides who waits and who may go on, and by that how far time may move. It holds no clock, no
/// answers and no sockets.
///
/// A flow is whatever takes turns: a process that uses the Mac runs until it waits for an answer; a
/// watcher only ever waits. In real time every wait ends when it is due. In virtual time one flow
/// runs at a time, a wait ends only while none runs, and the one that is due first ends first, even
/// if that lies ahead: so time moves. Equal times go by the order of joining.
class Scheduler {
 public:
  enum class Time { real, virtualTime };
  enum class Kind { process, watcher };
  using Flow = std::size_t;

  struct Wake {
    Microseconds due = 0;
    Flow flow = 0;
  };

  explicit Scheduler(Time time) : time_(time) {}

  /// A flow joins. It must wait before it is first woken.
  Flow join(Kind kind);

  /// The flow waits until `due`. It must not be waiting already.
  void wait(Flow flow, Microseconds due);

  /// The flow has gone, with its wait. Idempotent.
  void leave(Flow flow);

  /// The next wait that ends, `now` being the present; a process runs from then on. In virtual time
  /// the present becomes `due` when that is later.
  std::optional<Wake> wake(Microseconds now);

  /// The earliest wait of all.
  std::optional<Microseconds> nextDue() const;

  Time time() const { return time_; }

 private:
  Time time_;
  std::map<Flow, Kind> flows_;
  std::set<std::pair<Microseconds, Flow>> waits_;
  std::set<Flow> running_;
  Flow lastFlow_ = 0;
};

}  // namespace companion
