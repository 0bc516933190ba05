#include "simulator/world/actions.h"

#include <algorithm>

#include "simulator/world/controls.h"
#include "simulator/world/elements.h"
#include "simulator/world/presses.h"
#include "simulator/world/reactions.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

std::string showMenu(World& world, Application& application, Element& element) {
  if (toggleMenu(application, element)) return "showed the menu of " + described(element);
  const std::string sentence = "asked " + described(element) + " for its menu";
  const bool reacts = !element.onRightClick.empty();
  react(world, application, element.id, true);
  return reacts ? sentence : sentence + ", which has none";
}

/// An action that the element has and that nothing keeps it from.
std::string run(World& world, Application& application, Element& element,
                const std::string& action) {
  if (action == "AXPress") return press(world, application, element.id);
  if (action == "AXIncrement") return moveSlider(application, element, 1);
  if (action == "AXDecrement") return moveSlider(application, element, -1);
  if (action == "AXShowMenu") return showMenu(world, application, element);
  if (action == "AXRaise") {
    raiseWithin(world, element.window);
    return "raised " + described(element);
  }
  if (action == "AXCancel" && application.openMenu == element.id) {
    application.openMenu = 0;
    return "closed " + described(element);
  }
  return "performed " + action + " of " + described(element) + ", which does nothing";
}

}  // namespace

std::optional<std::vector<std::string>> actionNames(const Application& application, ElementId id) {
  if (id == 0) return std::vector<std::string>();
  const Element* element = findElement(application, id);
  if (element == nullptr) return std::nullopt;
  return element->actions;
}

ax::Error perform(World& world, Pid pid, ElementId id, const std::string& action,
                  std::string& outcome) {
  Application* application = findApplication(world, pid);
  if (application == nullptr) return ax::Error::cannotComplete;
  Element* element = findElement(*application, id);
  const bool exists = id == 0 || (element != nullptr && isThere(world, *application, *element));
  if (!exists) {
    outcome = "asked an element that is gone";
    return ax::Error::invalidElement;
  }
  const bool has = element != nullptr && std::find(element->actions.begin(), element->actions.end(),
                                                   action) != element->actions.end();
  if (!has) {
    outcome = (element == nullptr ? "the application" : described(*element)) + " has no " + action;
    return ax::Error::actionUnsupported;
  }
  if (!isEnabled(*element)) {
    outcome = described(*element) + " is disabled";
    return ax::Error::cannotComplete;
  }
  // The action has its effect whatever is answered: an application that opens a dialog answers
  // late, with an error, though it did what it was asked. The answer is read first, since a
  // reaction may take the element away.
  const ax::Error answer = habitsOf(*application, element->id).actionError;
  outcome = run(world, *application, *element, action);
  return answer;
}

bool unhide(World& world, Pid pid) {
  Application* application = findApplication(world, pid);
  if (application == nullptr) return false;
  setHidden(world, *application, false);
  return true;
}

}  // namespace simulator
