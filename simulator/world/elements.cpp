#include "simulator/world/elements.h"

#include <algorithm>
#include <utility>

#include "simulator/world/element_text.h"
#include "simulator/world/roles.h"
#include "simulator/world/sight.h"

namespace simulator {

namespace {

const Element* conditionAround(const Application& application, const Element* element) {
  return element == nullptr ? nullptr : findElement(application, element->dependsOn);
}

bool isMet(const Application& application, const Window* window, const Element& element,
           const Element* around) {
  if (element.presence == Presence::whileOpen) return application.openMenu == element.id;
  if (element.presence == Presence::whileHeld) {
    return holds(application, *habitsOf(application, element.id).onlyWhile);
  }
  return around != nullptr && around->frame && window != nullptr && window->hover &&
         driver::contains(*around->frame, *window->hover);
}

void grow(Application& application, ElementId id, bool deeper) {
  const Element& element = *findElement(application, id);
  const Element* last =
      element.children.empty() ? nullptr : findElement(application, element.children.back());
  const ElementId added = addElement(application, id, element.window, element.frame,
                                     last == nullptr ? std::string("AXGroup") : last->role)
                              .id;
  // The tree then never ends downwards: a walk must have limits of its own.
  if (deeper) application.habits[added].children = Habits::Children::growDeeper;
}

}  // namespace

bool holds(const Application& application, const Condition& condition) {
  const Element* element = findLabelled(application, condition.label);
  return element != nullptr && (valueText(*element) == condition.text) != condition.negated;
}

const Habits& habitsOf(const Application& application, ElementId id) {
  static const Habits none;
  const auto found = application.habits.find(id);
  return found == application.habits.end() ? none : found->second;
}

bool isEnabled(const Element& element) {
  const auto found = element.attributes.find("AXEnabled");
  if (found == element.attributes.end()) return true;
  const bool* enabled = std::get_if<bool>(&found->second);
  return enabled == nullptr || *enabled;
}

bool isTextInput(const Element& element) {
  if (takesText(element.role)) return true;
  const auto found = element.attributes.find("AXEditable");
  return found != element.attributes.end() && found->second == AttributeValue(true);
}

bool isSecure(const Element& element) {
  const std::string* subrole = textAttribute(element, "AXSubrole");
  return subrole != nullptr && *subrole == "AXSecureTextField";
}

std::string described(const Element& element) {
  const std::string& label = labelOf(element);
  return label.empty() ? element.role : element.role + " \"" + label + '"';
}

ElementName elementName(const Element& element) {
  return {element.role, labelOf(element), element.window};
}

std::optional<double> numberOf(const AttributeValue& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    return static_cast<double>(*integer);
  }
  if (const auto* number = std::get_if<double>(&value)) return *number;
  return std::nullopt;
}

bool isThere(const Application& application, const Window* window, const Element& element) {
  if (element.scrolledBy != 0 && isScrolledAway(application, element)) return false;
  const Element* each = conditionAround(application, &element);
  if (element.dependsOn != 0 && each == nullptr) return false;
  while (each != nullptr) {
    const Element* around = findElement(application, each->parent);
    if (!isMet(application, window, *each, around)) return false;
    each = conditionAround(application, around);
  }
  return true;
}

bool isThere(const World& world, const Application& application, const Element& element) {
  if (element.dependsOn == 0 && element.scrolledBy == 0) return true;
  return isThere(application, findWindow(world, element.window), element);
}

std::vector<ElementId> childrenOf(const World& world, const Application& application,
                                  const Element& element) {
  std::vector<ElementId> children = element.children;
  const auto isAway = [&](ElementId id) {
    const Element* child = findElement(application, id);
    return child != nullptr && !isThere(world, application, *child);
  };
  std::erase_if(children, isAway);
  return children;
}

Element& addElement(Application& application, ElementId parent, WindowNumber window,
                    std::optional<Rect> frame, std::string role) {
  const auto id = static_cast<ElementId>(application.elements.size()) + 1;
  ElementId dependsOn = 0;
  ElementId scrolledBy = 0;
  if (Element* around = findElement(application, parent)) {
    around->children.push_back(id);
    dependsOn = around->dependsOn;
    scrolledBy = scrolledAs(role, application, around);
  }
  Element& element = application.elements.emplace_back();
  element.id = id;
  element.parent = parent;
  element.window = window;
  element.role = std::move(role);
  element.frame = frame;
  element.dependsOn = dependsOn;
  element.scrolledBy = scrolledBy;
  return element;
}

void removeElement(Application& application, ElementId id) {
  const Element* element = findElement(application, id);
  if (element == nullptr) return;
  if (Element* parent = findElement(application, element->parent)) std::erase(parent->children, id);
  std::vector<ElementId> going{id};
  for (std::size_t i = 0; i < going.size(); ++i) {
    Element* each = findElement(application, going[i]);
    if (each == nullptr) continue;
    each->removed = true;
    if (application.focusedElement == each->id) application.focusedElement = 0;
    if (application.openMenu == each->id) application.openMenu = 0;
    // What stands elsewhere too, as a table's cell does, goes with what it stands in first.
    for (const ElementId child : each->children) {
      const Element* below = findElement(application, child);
      if (below != nullptr && below->parent == each->id) going.push_back(child);
    }
  }
}

void afterChildrenWereRead(Application& application, ElementId id) {
  const Element* element = findElement(application, id);
  if (element == nullptr) return;
  switch (habitsOf(application, element->id).children) {
    case Habits::Children::steady:
      break;
    case Habits::Children::grow:
      grow(application, element->id, false);
      break;
    case Habits::Children::growDeeper:
      grow(application, element->id, true);
      break;
    case Habits::Children::shrink:
      if (!element->children.empty()) removeElement(application, element->children.back());
      break;
  }
}

}  // namespace simulator
