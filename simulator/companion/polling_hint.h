#pragma once

#include <map>
#include <string>
#include <vector>

#include "simulator/scheduler.h"

namespace companion {

/// Tells the author of an agent that asks the same again and again while virtual time hardly
/// passes: by one line on standard error, once for a Mac.
class PollingHint {
 public:
  explicit PollingHint(simulator::Scheduler::Time time) : time_(time) {}

  /// A process, or a command to the Mac, comes with these words.
  void count(const std::vector<std::string>& words, simulator::Microseconds now);

  /// Somebody has let time pass, however little.
  void startAgain();

 private:
  simulator::Scheduler::Time time_;
  bool isTold_ = false;
  simulator::Microseconds last_ = 0;
  std::map<std::vector<std::string>, int> counts_;  // since time has passed
};

}  // namespace companion
