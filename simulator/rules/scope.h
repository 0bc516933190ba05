#pragma once

#include <set>

#include "simulator/rules/rule.h"

namespace simulator {

/// I11, of events, pictures and acts on elements: none in a window outside the scope. Keys are
/// judged by their own rules.
class ScopeRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;

 private:
  void checkPost(Violations& violations) const;
  void checkScreenshot(const platform::Call& call, Violations& violations) const;
  void checkElement(const platform::Call& call, Violations& violations);
  bool isConfined() const;
  bool inScope(WindowNumber number) const;
  bool namesScope(const Window& window) const;
  void noteScope(Pid pid);
  std::set<ElementId> shownInScope(const Application& application) const;

  std::set<WindowNumber> everInScope_;  // as messages to applications saw them
};

}  // namespace simulator
