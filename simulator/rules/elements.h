#pragma once

#include "simulator/rules/rule.h"

namespace simulator {

/// What must hold of a run that acts on elements, whatever its command is called: it has asked for
/// the session before, and the latest answer was that the session is usable. Enabling an
/// application's tree is no act: it lets the tree be read, which may be done at any time.
class ElementRules : public Rule {
 public:
  using Rule::Rule;
  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;

 private:
  bool hasAsked_ = false;  // for the session, in this run or request
};

}  // namespace simulator
