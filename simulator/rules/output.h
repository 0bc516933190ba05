#pragma once

#include "simulator/rules/rule.h"

namespace simulator {

/// What must hold of what a run writes, and of the status it ends with: I6 of one reply, I7 of the
/// lines of a run that lives on, and what a reply has to say of the run: that its service has gone
/// (I2), that input was withheld (I8), that a file was replaced (I19).
class OutputRules : public Rule {
 public:
  using Rule::Rule;

  void atEnd(Violations& violations) override;

 private:
  void checkLines(Violations& violations) const;
  void checkServiceLines(Violations& violations) const;
  void checkReply(const ReplyFacts& reply, Violations& violations) const;
};

}  // namespace simulator
