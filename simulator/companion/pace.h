#pragma once

#include <algorithm>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

namespace companion {

using simulator::Microseconds;

/// How fast virtual time may pass, for somebody who watches it: as fast as the processes go, so
/// many times as fast as real time at most, or not at all.
class Pace {
 public:
  /// Reads what follows the command "clock": "stop", or "run" and perhaps a number. Throws Failure.
  void tell(const std::vector<std::string>& words);

  void stop();

  /// Whatever the pace, time may go on at once until then.
  void allowUntil(Microseconds time) { allowed_ = std::max(allowed_, time); }

  /// How long time has to stand at `now`, in real time, before it may go to `next`: none when it
  /// may not until it is told. `real` is the present in real time; asked for the first time at
  /// `now`, the wait begins.
  std::optional<Microseconds> waitFor(Microseconds now, Microseconds next, Microseconds real);

  /// Time has nowhere to go: a wait that had begun is forgotten.
  void rest() { stand_.reset(); }

  /// Null: as fast as the processes go; 0: it stands still; how many times as fast as real time.
  nlohmann::json json() const;

  bool isFree() const { return !speed_; }

 private:
  struct Stand {
    Microseconds at = 0;
    Microseconds since = 0;  // in real time
  };

  std::optional<double> speed_;
  Microseconds allowed_ = 0;
  std::optional<Stand> stand_;
};

}  // namespace companion
