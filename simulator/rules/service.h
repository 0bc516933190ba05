#pragma once

#include <string>
#include <vector>

#include "simulator/mac/mac.h"

namespace simulator {

/// What must hold of a capture service besides what holds of every run: of its lines, and of its
/// end by a sharing that stops or by a signal.
class ServiceRules {
 public:
  /// The client outlives this object.
  explicit ServiceRules(const Client& client) : client_(client) {}

  using Violations = std::vector<std::string>;

  /// True when the client is a service.
  bool concernsUs() const;

  /// The Mac has told it that it must end.
  void interrupt() { interrupted_ = true; }
  bool isInterrupted() const { return interrupted_; }

  /// It is about to post an event.
  void post(Violations& violations);

  /// It has gone.
  void finish(Violations& violations) const;

 private:
  const Client& client_;
  bool interrupted_ = false;
  int postsAfter_ = 0;  // since it was told
};

/// Why the lines of a service do not belong to the way it has ended; one sentence each.
std::vector<std::string> endingFaults(const Client& client);

}  // namespace simulator
