#include "simulator/world/reactions.h"

#include <utility>

#include "simulator/world/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace reactions {

namespace {

/// What the reaction is about; null when it has gone.
Element* targetOf(Application& application, const Reaction& reaction) {
  return reaction.target ? findLabelled(application, *reaction.target) : nullptr;
}

std::string noTarget(const Reaction& reaction) {
  return "finds nothing labelled \"" + reaction.target.value_or("") + "\"";
}

constexpr const char* noWindow = "finds no window";

}  // namespace

std::string append(World& /*world*/, Application& application, Element& /*element*/,
                   const Reaction& reaction) {
  const Element* target = targetOf(application, reaction);
  if (target == nullptr) return noTarget(reaction);
  addText(application, target->id, reaction.text);
  return "";
}

std::string set(World& /*world*/, Application& application, Element& /*element*/,
                const Reaction& reaction) {
  const Element* target = targetOf(application, reaction);
  if (target == nullptr) return noTarget(reaction);
  putText(application, target->id, reaction.text);
  return "";
}

std::string toggle(World& /*world*/, Application& /*application*/, Element& element,
                   const Reaction& /*reaction*/) {
  AttributeValue& value = element.attributes["AXValue"];
  if (auto* flag = std::get_if<bool>(&value)) {
    *flag = !*flag;
    return "";
  }
  const auto* number = std::get_if<std::int64_t>(&value);
  value = std::int64_t{number != nullptr && *number == 1 ? 0 : 1};
  return "";
}

std::string choose(World& /*world*/, Application& application, Element& element,
                   const Reaction& /*reaction*/) {
  if (const Element* parent = findElement(application, element.parent)) {
    for (const ElementId id : parent->children) {
      Element* sibling = findElement(application, id);
      if (sibling != nullptr && sibling->role == element.role) {
        sibling->attributes["AXValue"] = std::int64_t{0};
      }
    }
  }
  element.attributes["AXValue"] = std::int64_t{1};
  return "";
}

std::string remove(World& /*world*/, Application& application, Element& /*element*/,
                   const Reaction& reaction) {
  const Element* target = targetOf(application, reaction);
  if (target == nullptr) return noTarget(reaction);
  removeElement(application, target->id);
  return "";
}

std::string openSheet(World& world, Application& application, Element& element,
                      const Reaction& reaction) {
  const WindowNumber window = windowMeant(application, element);
  if (findWindow(world, window) == nullptr) return noWindow;
  simulator::openSheet(world, application, window, reaction.text);
  return "";
}

std::string showWindow(World& world, Application& application, Element& /*element*/,
                       const Reaction& reaction) {
  const std::string title = reaction.window.value_or("");
  if (simulator::showWindow(world, application, title)) return "";
  return "finds no window titled \"" + title + "\"";
}

std::string retitle(World& world, Application& application, Element& element,
                    const Reaction& reaction) {
  Window* window = findWindow(world, windowMeant(application, element));
  if (window == nullptr) return noWindow;
  window->title = reaction.text;
  if (Element* shown = findElement(application, window->element)) {
    shown->attributes["AXTitle"] = reaction.text;
  }
  return "";
}

std::string quit(World& world, Application& application, Element& /*element*/,
                 const Reaction& /*reaction*/) {
  quitApplication(world, application.pid);
  return "";
}

std::string hang(World& /*world*/, Application& application, Element& /*element*/,
                 const Reaction& /*reaction*/) {
  application.hangs = true;
  return "";
}

std::string paste(World& world, Application& application, Element& /*element*/,
                  const Reaction& /*reaction*/) {
  return requestPaste(world, application);
}

}  // namespace reactions

std::string reactTo(World& world, Application& application, ElementId id,
                    std::vector<Reaction> Element::*reactions) {
  const auto index = static_cast<std::size_t>(id) - 1;
  std::string said;
  // New elements move the others: nothing is held across a reaction.
  for (std::size_t i = 0;
       i < (application.elements[index].*reactions).size() && application.running; ++i) {
    const Reaction reaction = (application.elements[index].*reactions)[i];
    const std::string each =
        reaction.effect(world, application, application.elements[index], reaction);
    if (!each.empty()) said += ", " + each;
  }
  return said;
}

std::string react(World& world, Application& application, ElementId id, bool right) {
  return reactTo(world, application, id, right ? &Element::onRightClick : &Element::onClick);
}

}  // namespace simulator
