#include "simulator/rules/scope.h"

#include <variant>
#include <vector>

#include "simulator/input/posted_event.h"
#include "simulator/mac/arguments.h"
#include "simulator/world/element_text.h"

namespace simulator {

using platform::Call;
using platform::Function;

namespace {

bool isAboutElement(const Call& call) {
  return call.function == Function::axAttribute || call.function == Function::axAttributes ||
         actsOnElement(call);
}

}  // namespace

void ScopeRules::before(const ObservedCall& seen, Violations& violations) {
  if (isPost(seen.call.function)) checkPost(violations);
  if (seen.call.function == Function::screenshot) checkScreenshot(seen.call, violations);
  if (isAboutElement(seen.call) && isConfined()) checkElement(seen.call, violations);
}

/// To one window, by a scope that this rule can judge.
bool ScopeRules::isConfined() const {
  return !run_.isService() && !titleInScope(run_.client, "\x01");
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

/// By what the window server calls it, or it calls itself.
bool ScopeRules::namesScope(const Window& window) const {
  const auto names = [&](const std::string& title) {
    return !title.empty() && titleInScope(run_.client, title);
  };
  if (names(window.title.value_or(""))) return true;
  const Application* owner = findApplication(run_.mac.world, window.owner);
  const Element* element = owner == nullptr ? nullptr : findElement(*owner, window.element);
  if (element == nullptr) return false;
  const std::string* title = textAttribute(*element, "AXTitle");
  return title != nullptr && names(*title);
}

/// A title may change once the run has read it: what was in the scope stays so.
void ScopeRules::noteScope(Pid pid) {
  for (const Window& window : run_.mac.world.windows) {
    if (window.owner == pid && namesScope(window)) everInScope_.insert(window.number);
  }
}

/// All elements that a walk from these windows may come to: an element may be under several.
std::set<ElementId> ScopeRules::shownInScope(const Application& application) const {
  std::vector<ElementId> next;
  for (const WindowNumber number : everInScope_) {
    const Window* window = findWindow(run_.mac.world, number);
    if (window != nullptr && window->owner == application.pid) next.push_back(window->element);
  }
  std::set<ElementId> shown;
  while (!next.empty()) {
    const ElementId id = next.back();
    next.pop_back();
    const Element* element = findElement(application, id);
    if (element == nullptr || !shown.insert(id).second) continue;
    next.insert(next.end(), element->children.begin(), element->children.end());
    const auto claimed = element->attributes.find("AXChildren");
    if (claimed == element->attributes.end()) continue;
    const auto* children = std::get_if<std::vector<ElementId>>(&claimed->second);
    if (children != nullptr) next.insert(next.end(), children->begin(), children->end());
  }
  return shown;
}

/// Nothing is done with an element of a window outside the scope. A sheet is in the scope with what
/// it is a sheet of; what the menu bar holds is in no window. An element that lies about its window
/// is not judged.
void ScopeRules::checkElement(const Call& call, Violations& violations) {
  const auto reference = Arguments(call).get<platform::ElementReference>(0);
  noteScope(reference.pid);
  if (!actsOnElement(call)) return;
  const Application* application = findApplication(run_.mac.world, reference.pid);
  const Element* element =
      application == nullptr ? nullptr : findElement(*application, reference.id);
  if (element == nullptr || findWindow(run_.mac.world, element->window) == nullptr) return;
  if (element->attributes.count("AXWindow") > 0) return;
  if (shownInScope(*application).count(element->id) == 0) {
    violations.push_back("I11: an act on an element outside the scope");
  }
}

}  // namespace simulator
