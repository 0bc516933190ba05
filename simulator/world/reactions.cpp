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

}  // namespace

void append(World& /*world*/, Application& application, Element& /*element*/,
            const Reaction& reaction) {
  if (Element* target = targetOf(application, reaction)) {
    addText(application, target->id, reaction.text);
  }
}

void set(World& /*world*/, Application& application, Element& /*element*/,
         const Reaction& reaction) {
  if (Element* target = targetOf(application, reaction)) {
    putText(application, target->id, reaction.text);
  }
}

void toggle(World& /*world*/, Application& /*application*/, Element& element,
            const Reaction& /*reaction*/) {
  AttributeValue& value = element.attributes["AXValue"];
  if (auto* flag = std::get_if<bool>(&value)) {
    *flag = !*flag;
    return;
  }
  const auto* number = std::get_if<std::int64_t>(&value);
  value = std::int64_t{number != nullptr && *number == 1 ? 0 : 1};
}

void choose(World& /*world*/, Application& application, Element& element,
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
}

void remove(World& /*world*/, Application& application, Element& /*element*/,
            const Reaction& reaction) {
  if (const Element* target = targetOf(application, reaction)) {
    removeElement(application, target->id);
  }
}

void openSheet(World& world, Application& application, Element& element, const Reaction& reaction) {
  simulator::openSheet(world, application, windowMeant(application, element), reaction.text);
}

void showWindow(World& world, Application& application, Element& /*element*/,
                const Reaction& reaction) {
  if (reaction.window) simulator::showWindow(world, application, *reaction.window);
}

void retitle(World& world, Application& application, Element& element, const Reaction& reaction) {
  Window* window = findWindow(world, windowMeant(application, element));
  if (window == nullptr) return;
  window->title = reaction.text;
  if (Element* shown = findElement(application, window->element)) {
    shown->attributes["AXTitle"] = reaction.text;
  }
}

void quit(World& world, Application& application, Element& /*element*/,
          const Reaction& /*reaction*/) {
  quitApplication(world, application.pid);
}

void hang(World& /*world*/, Application& application, Element& /*element*/,
          const Reaction& /*reaction*/) {
  application.hangs = true;
}

void paste(World& world, Application& application, Element& /*element*/,
           const Reaction& /*reaction*/) {
  requestPaste(world, application);
}

}  // namespace reactions

void reactTo(World& world, Application& application, ElementId id,
             std::vector<Reaction> Element::*reactions) {
  const auto index = static_cast<std::size_t>(id) - 1;
  // New elements move the others: nothing is held across a reaction.
  for (std::size_t i = 0;
       i < (application.elements[index].*reactions).size() && application.running; ++i) {
    const Reaction reaction = (application.elements[index].*reactions)[i];
    reaction.effect(world, application, application.elements[index], reaction);
  }
}

void react(World& world, Application& application, ElementId id, bool right) {
  reactTo(world, application, id, right ? &Element::onRightClick : &Element::onClick);
}

}  // namespace simulator
