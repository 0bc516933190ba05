#include "simulator/rules/scope.h"

#include "simulator/input/posted_event.h"
#include "simulator/mac/arguments.h"

namespace simulator {

using platform::Call;
using platform::Function;

void ScopeRules::before(const ObservedCall& seen, Violations& violations) {
  if (isPost(seen.call.function)) checkPost(violations);
  if (seen.call.function == Function::screenshot) checkScreenshot(seen.call, violations);
}

bool ScopeRules::inScope(WindowNumber number) const {
  // Each session of a service has a scope of its own, which only the service knows.
  if (run_.isService()) return true;
  // Who may not record the screen is told no titles, and a window without one is in every scope.
  if (!run_.mac.world.screenRecordingAllowed) return true;
  const Window* window = findWindow(run_.mac.world, number);
  return window == nullptr || titleInScope(run_.client, window->title.value_or(""));
}

void ScopeRules::checkPost(Violations& violations) const {
  const platform::EventImage& event = run_.latestEvent;
  if (run_.latestIdentity == event.identity) return;  // the second route of one operation
  const auto window = static_cast<WindowNumber>(fieldOf(event, quartz::Field::targetWindow));
  if (window != 0 && !inScope(window)) {
    violations.push_back("I11: an event into a window outside the scope");
  }
}

/// Of the windows of the process that owns the first titled one, none with a title outside the
/// scope is captured. What else lies in the picture is other applications', which no scope is
/// about.
void ScopeRules::checkScreenshot(const Call& call, Violations& violations) const {
  if (run_.command() != "capture") return;
  const auto filter = Arguments(call).get<platform::WireFilter>(0);
  Pid target = 0;
  for (const WindowNumber number : filter.windows) {
    const Window* window = findWindow(run_.mac.world, number);
    if (window == nullptr) continue;
    if (target == 0) target = window->owner;  // the application's own windows come first
    if (window->owner == target && !inScope(number)) {
      violations.push_back("I11: a window outside the scope is captured");
    }
  }
}

}  // namespace simulator
