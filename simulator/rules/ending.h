#pragma once

#include "simulator/rules/rule.h"

namespace simulator {

/// I24: a run that is told to end begins nothing more. It lets go what it holds, says so in its
/// line, and ends by that signal in time.
class EndingRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  bool isUndoing(const platform::Call& call) const;
  bool isUnderWay(const platform::Call& call) const;
  void checkTime(Violations& violations) const;

  int clears_ = 0;        // of the clipboard
  bool replied_ = false;  // the line was begun before the run could know

  // Since the run was told.
  int calls_ = 0;         // of the flow that works
  int actsOnTheWay_ = 0;  // that the Mac got only later
};

}  // namespace simulator
