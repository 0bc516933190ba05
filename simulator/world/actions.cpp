#include "simulator/world/actions.h"

#include <algorithm>

#include "simulator/world/controls.h"
#include "simulator/world/elements.h"
#include "simulator/world/presses.h"
#include "simulator/world/reactions.h"
#include "simulator/world/scrolling.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

std::string showMenu(World& world, Application& application, Element& element) {
  if (toggleMenu(application, element)) return "showed the menu of " + described(element);
  const std::string sentence = "asked " + described(element) + " for its menu";
  const bool reacts = !element.onRightClick.empty();
  const std::string said = react(world, application, element.id, true);
  return sentence + (reacts ? said : ", which has none");
}

constexpr const char* scrollToVisibleAction = "AXScrollToVisible";

/// What scrolls can be scrolled to, unless its line says which actions it has.
std::vector<std::string> actionsOf(const Application& application, const Element& element) {
  std::vector<std::string> names = element.actions;
  const bool scrolls = element.scrolledBy != 0 && !habitsOf(application, element.id).givesActions;
  if (scrolls) names.emplace_back(scrollToVisibleAction);
  return names;
}

/// An action that the element has and that nothing keeps it from.
std::string run(World& world, Application& application, Element& element,
                const std::string& action) {
  if (action == "AXPress") return press(world, application, element.id);
  if (action == "AXIncrement") return moveSlider(application, element, 1);
  if (action == "AXDecrement") return moveSlider(application, element, -1);
  if (action == "AXShowMenu") return showMenu(world, application, element);
  if (action == scrollToVisibleAction && element.scrolledBy != 0) {
    return scrollToVisible(application, element.id);
  }
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
  return actionsOf(application, *element);
}

Performed perform(World& world, Pid pid, ElementId id, const std::string& action) {
  Application* application = findApplication(world, pid);
  if (application == nullptr) {
    return {ax::Error::cannotComplete, false, "there is no such application"};
  }
  Element* element = findElement(*application, id);
  const bool exists = id == 0 || (element != nullptr && isThere(world, *application, *element));
  if (!exists) return {ax::Error::invalidElement, false, "asked an element that is gone"};
  const std::vector<std::string> names =
      element == nullptr ? std::vector<std::string>() : actionsOf(*application, *element);
  const bool has = std::find(names.begin(), names.end(), action) != names.end();
  if (!has) {
    const std::string name = element == nullptr ? "the application" : described(*element);
    return {ax::Error::actionUnsupported, false, name + " has no " + action};
  }
  if (!isEnabled(*element)) {
    return {ax::Error::cannotComplete, false, described(*element) + " is disabled"};
  }
  // The action has its effect whatever is answered: an application that opens a dialog answers
  // late, with an error, though it did what it was asked. The answer is read first, since a
  // reaction may take the element away.
  const ax::Error answer = habitsOf(*application, element->id).actionError;
  std::string outcome = run(world, *application, *element, action);
  if (answer != ax::Error::success) {
    outcome += ", answered with " + std::to_string(static_cast<std::int32_t>(answer));
  }
  return {answer, true, std::move(outcome)};
}

bool unhide(World& world, Pid pid) {
  Application* application = findApplication(world, pid);
  if (application == nullptr) return false;
  setHidden(world, *application, false);
  return true;
}

}  // namespace simulator
