#include "simulator/rules/elements.h"

#include <optional>

#include "platform/window_server.h"
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

void ElementRules::before(const Call& call, Violations& violations) const {
  if (session_ == Session::usable || !actsOnElement(call)) return;
  violations.push_back(session_ == Session::unasked
                           ? "I21: acted on an element before any session check"
                           : "I21: acted on an element after a check found no usable session");
}

void ElementRules::after(const Call& call, const Answer& answer) {
  if (call.function != Function::session) return;
  session_ = tellsUsable(answer) ? Session::usable : Session::unusable;
}

bool tellsUsable(const Answer& answer) {
  const auto session = driver::unpack<std::optional<windowserver::Session>>(answer.value);
  return !session || (!session->locked.value_or(false) && session->onConsole.value_or(true));
}

}  // namespace simulator
