#pragma once

#include "simulator/rules/rule.h"

namespace simulator {

/// I11, of events and pictures: none for a window outside the scope. Keys are judged by their own
/// rules.
class ScopeRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;

 private:
  void checkPost(Violations& violations) const;
  void checkScreenshot(const platform::Call& call, Violations& violations) const;
  bool inScope(WindowNumber number) const;
};

}  // namespace simulator
