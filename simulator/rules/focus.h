#pragma once

#include <map>
#include <set>

#include "simulator/rules/rule.h"

namespace simulator {

/// I10: each giving of focus is followed by one attempt to take it back; but focus that was held is
/// left where it is when the system does not tell who is in front. Each record owes its wait (I5).
class FocusRules : public Rule {
 public:
  using Rule::Rule;

  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  void noteRecord(const platform::Call& call, const Answer& answer, Violations& violations);
  void noteUnknown();
  void checkField(const platform::Call& call, Violations& violations);
  void noteFront(const Answer& answer);
  void noteSerial(const platform::Call& call, const Answer& answer);
  void noteTaken(Pid pid);

  std::map<Pid, int> given_;   // gives less attempts to take back
  std::set<Pid> sawInFront_;   // since it was given focus
  std::set<Pid> held_;         // by a service, since an earlier request
  std::set<Pid> leftUnknown_;  // by a service that was not told who was in front
  bool isUnknown_ = false;     // as the latest question for it was answered
};

}  // namespace simulator
