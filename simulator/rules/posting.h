#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "simulator/rules/rule.h"

namespace simulator {

/// What must hold of every event that is posted: that it may be posted at all (I1, I2), what it
/// carries and to whom it goes (I3), that a button that goes down comes up again (I4), and what
/// comes before a second click (I5).
class PostingRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  void checkOperation(const platform::EventImage& event, Violations& violations);
  void checkPermission(Violations& violations);
  void checkPress(Violations& violations) const;

  int operationsWhileUnusable_ = 0;  // since the last check of the session
  int operationsAfterDeath_ = 0;     // of the service
  int operationsAfterInterruption_ = 0;
  bool hasSlept_ = false;                 // since the service was last asked for
  std::optional<Pid> postedTo_;           // in this run or request
  std::map<std::uint32_t, int> pressed_;  // downs less ups, by the type of the down
};

}  // namespace simulator
