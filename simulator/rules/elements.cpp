#include "simulator/rules/elements.h"

#include "simulator/mac/arguments.h"

namespace simulator {

using platform::Call;
using platform::Function;

namespace {

bool isEnabling(const std::string& attribute) {
  return attribute == "AXManualAccessibility" || attribute == "AXEnhancedUserInterface";
}

/// A write that names no attribute is none: the world refuses it.
bool actsOnElement(const Call& call) {
  if (call.function == Function::axPerform) return true;
  const Arguments arguments(call);
  return call.function == Function::axSetAttribute && arguments.count() > 1 &&
         !isEnabling(arguments.text(1));
}

}  // namespace

void ElementRules::before(const ObservedCall& seen, Violations& violations) {
  if (!actsOnElement(seen.call)) return;
  if (!hasAsked_) {
    violations.push_back("I21: acted on an element before any session check");
  } else if (run_.sessionUnusable) {
    violations.push_back("I21: acted on an element after a check found no usable session");
  }
}

void ElementRules::after(const ObservedCall& seen, const Answer& /*answer*/,
                         Violations& /*violations*/) {
  if (seen.call.function == Function::session) hasAsked_ = true;
  if (run_.endsRequest(seen.call)) hasAsked_ = false;
}

}  // namespace simulator
