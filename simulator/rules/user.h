#pragma once

#include <map>

#include "simulator/rules/rule.h"

namespace simulator {

/// I3, of the user: no call moves the pointer, the front application or the key window, unless the
/// front application is the target itself, which may react by changing its window or quitting. And
/// I15, of the user's time: of one process, a run waits for two time-outs at most.
class UserRules : public Rule {
 public:
  using Rule::Rule;

  void look() override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;

 private:
  void noteFront(const ObservedCall& seen, const Answer& answer);
  void checkUntouched(const platform::Call& call, Violations& violations) const;
  void checkStall(const platform::Call& call, const Answer& answer, Violations& violations);

  Point pointerBefore_;
  Pid frontBefore_ = 0;
  bool isToBeAsked_ = false;      // the user, before the next capture
  ElementId keyboardBefore_ = 0;  // the front application's focused window
  Pid toldInFront_ = 0;           // when the run last asked; 0 for none
  bool isJustTold_ = false;       // nothing but records has come since, in the flow that asked
  std::size_t tellingFlow_ = 0;
  std::map<Pid, int> timeouts_;
};

}  // namespace simulator
