#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "simulator/rules/rule.h"

namespace simulator {

/// What must hold of every run, whatever it is about. One object watches one client, from its first
/// call to its end.
class Rules {
 public:
  using Violations = simulator::Violations;

  /// Both outlive this object.
  Rules(const Mac& mac, const Client& client);

  /// Before the world answers a call, and after. `flow` tells the client's flows apart; `faulty`
  /// says that a fault has answered.
  void before(const platform::Call& call, std::size_t flow, Violations& violations);
  void after(const platform::Call& call, const Answer& answer, bool faulty, std::size_t flow,
             Violations& violations);

  /// Before the world is asked again for the answer of a call that was pending.
  void look();

  /// Before the clock moves on.
  void beforeTimePasses(Violations& violations);

  /// Whether a check of the run's own has ended its input, with what was pressed then: nothing may
  /// be posted after it.
  bool inputWasEnded() const { return run_.everUnusable || run_.livenessFailed; }

  /// When the client has gone. Only the first call counts.
  void finish(Violations& violations);

 private:
  void note(const platform::Call& call, const Answer& answer);

  /// Those that have a use for each of the functions that come with every call: few have for all.
  struct Interested {
    std::vector<Rule*> look, before, after, beforeTimePasses;
  };

  template <class... Kinds>
  void add();

  WatchedRun run_;
  std::vector<std::unique_ptr<Rule>> rules_;
  Interested interested_;
  bool finished_ = false;
};

}  // namespace simulator
