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
Element* targetOf(const Reacting& with) {
  const auto& target = with.reaction.target;
  return target ? findLabelled(with.application, *target) : nullptr;
}

std::string noTarget(const Reacting& with) {
  return "finds nothing labelled \"" + with.reaction.target.value_or("") + "\"";
}

constexpr const char* noWindow = "finds no window";

/// The element whose reaction it is, also when another one of its reactions has removed it.
Element& self(const Reacting& with) {
  return with.application.elements[static_cast<std::size_t>(with.element) - 1];
}

}  // namespace

std::string append(const Reacting& with) {
  const Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  addText(with.application, target->id, with.reaction.text);
  return "";
}

std::string set(const Reacting& with) {
  const Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  putText(with.application, target->id, with.reaction.text);
  return "";
}

std::string toggle(const Reacting& with) {
  AttributeValue& value = self(with).attributes["AXValue"];
  if (auto* flag = std::get_if<bool>(&value)) {
    *flag = !*flag;
    return "";
  }
  const auto* number = std::get_if<std::int64_t>(&value);
  value = std::int64_t{number != nullptr && *number == 1 ? 0 : 1};
  return "";
}

std::string choose(const Reacting& with) {
  Element& element = self(with);
  if (const Element* parent = findElement(with.application, element.parent)) {
    for (const ElementId id : parent->children) {
      Element* sibling = findElement(with.application, id);
      if (sibling != nullptr && sibling->role == element.role) {
        sibling->attributes["AXValue"] = std::int64_t{0};
      }
    }
  }
  element.attributes["AXValue"] = std::int64_t{1};
  return "";
}

std::string remove(const Reacting& with) {
  const Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  removeElement(with.application, target->id);
  return "";
}

std::string openSheet(const Reacting& with) {
  const WindowNumber window = windowMeant(with.application, with.element);
  if (findWindow(with.world, window) == nullptr) return noWindow;
  simulator::openSheet(with.world, with.application, window, with.reaction.text);
  return "";
}

std::string showWindow(const Reacting& with) {
  const std::string title = with.reaction.window.value_or("");
  if (simulator::showWindow(with.world, with.application, title)) return "";
  return "finds no window titled \"" + title + "\"";
}

std::string retitle(const Reacting& with) {
  Window* window = findWindow(with.world, windowMeant(with.application, with.element));
  if (window == nullptr) return noWindow;
  window->title = with.reaction.text;
  if (Element* shown = findElement(with.application, window->element)) {
    shown->attributes["AXTitle"] = with.reaction.text;
  }
  return "";
}

std::string quit(const Reacting& with) {
  quitApplication(with.world, with.application.pid);
  return "";
}

std::string hang(const Reacting& with) {
  with.application.hangs = true;
  return "";
}

std::string paste(const Reacting& with) { return requestPaste(with.world, with.application); }

}  // namespace reactions

std::string reactTo(World& world, Application& application, ElementId id,
                    std::vector<Reaction> Element::*reactions) {
  const auto index = static_cast<std::size_t>(id) - 1;
  std::string said;
  // New elements move the others: nothing is held across a reaction.
  for (std::size_t i = 0;
       i < (application.elements[index].*reactions).size() && application.running; ++i) {
    const Reaction reaction = (application.elements[index].*reactions)[i];
    const std::string each = reaction.effect({world, application, id, reaction});
    if (!each.empty()) said += ", " + each;
  }
  return said;
}

std::string react(World& world, Application& application, ElementId id, bool right) {
  return reactTo(world, application, id, right ? &Element::onRightClick : &Element::onClick);
}

}  // namespace simulator
