#pragma once

#include <map>
#include <set>

#include "simulator/rules/rule.h"

namespace simulator {

/// I10: each giving of focus is followed by one attempt to take it back. Each record owes its wait
/// (I5).
class FocusRules : public Rule {
 public:
  using Rule::Rule;

  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  void noteRecord(const platform::Call& call, const Answer& answer);
  void noteFront(const Answer& answer);
  void noteSerial(const platform::Call& call, const Answer& answer);

  std::map<Pid, int> given_;  // gives less attempts to take back
  std::set<Pid> sawInFront_;  // since it was given focus
};

}  // namespace simulator
