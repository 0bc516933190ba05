#pragma once

#include <map>
#include <set>
#include <string>

#include "simulator/rules/rule.h"

namespace simulator {

/// What must hold of a run that acts on elements, whatever its command is called: it has asked for
/// the session before, and the latest answer was that the session is usable. Enabling an
/// application's tree is no act: it lets the tree be read, which may be done at any time. What is
/// built on demand is acted on only after the run has asked for it.
class ElementRules : public Rule {
 public:
  using Rule::Rule;
  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;

 private:
  void checkSession(Violations& violations) const;
  void checkTree(const platform::Call& call, Violations& violations) const;
  void noteWrite(const platform::Call& call);

  bool hasAsked_ = false;                          // for the session, in this run or request
  std::map<Pid, std::set<std::string>> enabling_;  // what was written to the applications
};

}  // namespace simulator
