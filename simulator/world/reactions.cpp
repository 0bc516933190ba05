#include "simulator/world/reactions.h"

#include <utility>

#include "simulator/world/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

void toggle(Element& element) {
  AttributeValue& value = element.attributes["AXValue"];
  if (auto* flag = std::get_if<bool>(&value)) {
    *flag = !*flag;
    return;
  }
  const auto* number = std::get_if<std::int64_t>(&value);
  value = std::int64_t{number != nullptr && *number == 1 ? 0 : 1};
}

void choose(Application& application, Element& element) {
  if (const Element* parent = findElement(application, element.parent)) {
    for (const ElementId id : parent->children) {
      Element* sibling = findElement(application, id);
      if (sibling != nullptr && sibling->role == element.role) {
        sibling->attributes["AXValue"] = std::int64_t{0};
      }
    }
  }
  element.attributes["AXValue"] = std::int64_t{1};
}

void retitle(World& world, Application& application, WindowNumber number,
             const std::string& title) {
  Window* window = findWindow(world, number);
  if (window == nullptr) return;
  window->title = title;
  if (Element* element = findElement(application, window->element)) {
    element->attributes["AXTitle"] = title;
  }
}

void run(World& world, Application& application, Element& element, const Reaction& reaction) {
  switch (reaction.kind) {
    case Reaction::Kind::append:
      if (Element* target = findLabelled(application, reaction.target)) {
        addText(application, target->id, reaction.text);
      }
      break;
    case Reaction::Kind::set:
      if (Element* target = findLabelled(application, reaction.target)) {
        putText(application, target->id, reaction.text);
      }
      break;
    case Reaction::Kind::toggle:
      toggle(element);
      break;
    case Reaction::Kind::openSheet:
      openSheet(world, application, element.window, reaction.text);
      break;
    case Reaction::Kind::closeWindow:
      closeWindow(world, element.window);
      break;
    case Reaction::Kind::showWindow:
      showWindow(world, application, reaction.text);
      break;
    case Reaction::Kind::retitle:
      retitle(world, application, element.window, reaction.text);
      break;
    case Reaction::Kind::quit:
      quitApplication(world, application.pid);
      break;
    case Reaction::Kind::hang:
      application.hangs = true;
      break;
    case Reaction::Kind::remove:
      if (const Element* target = findLabelled(application, reaction.target)) {
        removeElement(application, target->id);
      }
      break;
    case Reaction::Kind::choose:
      choose(application, element);
      break;
    case Reaction::Kind::paste:
      requestPaste(world, application);
      break;
  }
}

}  // namespace

void reactTo(World& world, Application& application, ElementId id,
             std::vector<Reaction> Element::*reactions) {
  const auto index = static_cast<std::size_t>(id) - 1;
  // New elements move the others: nothing is held across a reaction.
  for (std::size_t i = 0;
       i < (application.elements[index].*reactions).size() && application.running; ++i) {
    const Reaction reaction = (application.elements[index].*reactions)[i];
    run(world, application, application.elements[index], reaction);
  }
}

void react(World& world, Application& application, ElementId id, bool right) {
  reactTo(world, application, id, right ? &Element::onRightClick : &Element::onClick);
}

}  // namespace simulator
