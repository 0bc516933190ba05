#include "simulator/rules/elements.h"

#include "simulator/mac/arguments.h"
#include "simulator/world/roles.h"

namespace simulator {

using platform::Call;
using platform::ElementReference;
using platform::Function;

namespace {

bool hasTreeOnDemand(const Application& application) {
  return application.kind == ApplicationKind::chromium || application.treeOnDemand;
}

/// Windows and menus are there in every application; what the windows show may not be.
bool isBuiltOnDemand(const World& world, const ElementReference& reference) {
  const Application* application = findApplication(world, reference.pid);
  if (application == nullptr || !hasTreeOnDemand(*application)) return false;
  const Element* element = findElement(*application, reference.id);
  return element != nullptr && !isWindowRole(element->role) && !element->role.starts_with("AXMenu");
}

}  // namespace

void ElementRules::before(const ObservedCall& seen, Violations& violations) {
  if (seen.call.function == Function::axSetAttribute) noteWrite(seen.call);
  if (!actsOnElement(seen.call)) return;
  checkSession(violations);
  checkTree(seen.call, violations);
}

void ElementRules::checkSession(Violations& violations) const {
  if (!hasAsked_) {
    violations.push_back("I21: acted on an element before any session check");
  } else if (run_.sessionUnusable) {
    violations.push_back("I21: acted on an element after a check found no usable session");
  }
}

void ElementRules::checkTree(const Call& call, Violations& violations) const {
  const Arguments arguments(call);
  if (arguments.count() == 0) return;
  const auto reference = arguments.get<ElementReference>(0);
  if (!isBuiltOnDemand(run_.mac.world, reference)) return;
  const auto written = enabling_.find(reference.pid);
  if (written != enabling_.end() && written->second.size() == 2) return;
  violations.push_back("I25: acted on an element of a tree that was not enabled");
}

/// The answers do not matter: an application may reject the attributes and enable its tree.
void ElementRules::noteWrite(const Call& call) {
  const Arguments arguments(call);
  if (arguments.count() < 2 || !isEnablingAttribute(arguments.text(1))) return;
  enabling_[arguments.get<ElementReference>(0).pid].insert(arguments.text(1));
}

void ElementRules::after(const ObservedCall& seen, const Answer& /*answer*/,
                         Violations& /*violations*/) {
  if (seen.call.function == Function::session) hasAsked_ = true;
  if (run_.endsRequest(seen.call)) hasAsked_ = false;
}

}  // namespace simulator
