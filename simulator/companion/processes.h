#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>

namespace companion {

/// The processes that this one has started, with all that these have: whether they are at rest, so
/// that nothing but the Mac, or something outside of it, lets one of them go on.
class ProcessesBelow {
 public:
  /// Looks at them. True when there was an instant, during the look, at which all of them slept.
  /// Whoever had sent something to this process before that instant has it waiting here.
  bool areAtRest();

 private:
  /// A thread as it was seen.
  struct Thread {
    bool isAsleep = false;
    bool isSure = false;  // the kernel says what it waits for
    std::uint64_t switches = 0;

    bool operator==(const Thread& other) const {
      return isAsleep == other.isAsleep && isSure == other.isSure && switches == other.switches;
    }
  };
  using Threads = std::map<pid_t, Thread>;

  static Threads look();
  static Thread seen(pid_t process, pid_t thread);

  Threads doubtful_;
  int doubtfulLooks_ = 0;
};

}  // namespace companion
