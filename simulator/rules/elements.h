#pragma once

#include <string>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"

namespace simulator {

/// What must hold of a run that acts on elements, whatever its command is called: it has asked for
/// the session before, and the latest answer was that the session is usable. Enabling an
/// application's tree is no act: it lets the tree be read, which may be done at any time.
class ElementRules {
 public:
  using Violations = std::vector<std::string>;

  void before(const platform::Call& call, Violations& violations) const;
  void after(const platform::Call& call, const Answer& answer);

  /// A request of a service, which is what to others is a run, has ended.
  void endRequest() { session_ = Session::unasked; }

 private:
  enum class Session { unasked, usable, unusable };

  Session session_ = Session::unasked;  // as the run was told
};

/// Whether this answer to a question for the session says that it is usable.
bool tellsUsable(const Answer& answer);

}  // namespace simulator
