#include "simulator/world/controls.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"

namespace simulator {

namespace {

/// The menu's own element or item above it, up to what opened the whole.
const Element* ownerOf(const Application& application, const Element& item) {
  const Element* each = findElement(application, item.parent);
  while (each != nullptr && (each->role == "AXMenu" || each->role == "AXMenuItem")) {
    each = findElement(application, each->parent);
  }
  return each;
}

/// What a combo box shows while it is open.
bool isListOfChoices(const Element& element) {
  return element.role == "AXList" && element.presence == Presence::whileOpen;
}

double attributeOf(const Element& element, const char* name, double otherwise) {
  const auto found = element.attributes.find(name);
  return found == element.attributes.end() ? otherwise
                                           : numberOf(found->second).value_or(otherwise);
}

std::string shortNumber(double value) {
  std::string text = std::to_string(value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

/// Without a step of its own a slider goes a tenth of its way.
double stepOf(const Application& application, const Element& element) {
  const double range =
      attributeOf(element, "AXMaxValue", 1) - attributeOf(element, "AXMinValue", 0);
  return habitsOf(application, element.id).step.value_or(range / 10);
}

}  // namespace

ElementId menuOf(const Application& application, const Element& element) {
  const auto found =
      std::find_if(element.children.begin(), element.children.end(), [&](ElementId id) {
        const Element* child = findElement(application, id);
        return child != nullptr && (child->role == "AXMenu" || isListOfChoices(*child));
      });
  return found == element.children.end() ? 0 : *found;
}

const Element* openerFor(const Application& application, const Element& element) {
  const Element* around = findElement(application, element.parent);
  const bool isPart =
      element.role == "AXButton" && around != nullptr && around->role == "AXComboBox";
  const Element* opener = isPart ? around : &element;
  const bool opens = isPart || element.role == "AXPopUpButton" || element.role == "AXMenuButton" ||
                     element.role == "AXMenuBarItem";
  return opens && menuOf(application, *opener) != 0 ? opener : nullptr;
}

bool isItem(const Application& application, const Element& element) {
  if (element.role == "AXMenuItem") return true;
  const Element* around = findElement(application, element.parent);
  return around != nullptr && isListOfChoices(*around);
}

bool isInOpenMenu(const Application& application, const Element& element) {
  return application.openMenu != 0 && element.dependsOn == application.openMenu;
}

bool toggleMenu(Application& application, const Element& element) {
  const ElementId menu = menuOf(application, element);
  if (menu == 0) return false;
  // One menu at a time: another one that is open closes.
  application.openMenu = application.openMenu == menu ? 0 : menu;
  return true;
}

ElementId itemWithShortcut(const Application& application, std::string_view character,
                           std::int64_t modifiers) {
  const auto& elements = application.elements;
  const auto found = std::find_if(elements.begin(), elements.end(), [&](const Element& each) {
    if (each.removed || each.window != 0 || each.role != "AXMenuItem" || !isEnabled(each)) {
      return false;
    }
    const std::string* held = textAttribute(each, "AXMenuItemCmdChar");
    if (held == nullptr || *held != character) return false;
    const auto mask = each.attributes.find("AXMenuItemCmdModifiers");
    const auto needed = mask == each.attributes.end() ? 0.0 : numberOf(mask->second).value_or(0);
    return needed == static_cast<double>(modifiers);
  });
  return found == elements.end() ? 0 : found->id;
}

void chooseItem(Application& application, ElementId id) {
  application.openMenu = 0;
  const Element& item = *findElement(application, id);
  if (item.role != "AXMenuItem") {
    Element& box = *findElement(application, findElement(application, item.parent)->parent);
    setText(box, std::string(textOf(item)));
    return;
  }
  const Element* owner = ownerOf(application, item);
  if (owner == nullptr || owner->role != "AXPopUpButton") return;
  const auto title = item.attributes.find("AXTitle");
  if (title == item.attributes.end()) return;
  findElement(application, owner->id)->attributes["AXValue"] = title->second;
}

AttributeValue withinLimits(const Element& element, double value) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const double least = attributeOf(element, "AXMinValue", -infinity);
  const double most = attributeOf(element, "AXMaxValue", infinity);
  // Limits that make no sense limit nothing.
  const double limited = least <= most ? std::clamp(value, least, most) : value;
  const auto held = element.attributes.find("AXValue");
  const bool whole = held != element.attributes.end() &&
                     std::holds_alternative<std::int64_t>(held->second) &&
                     std::nearbyint(limited) == limited && std::abs(limited) < 1e15;
  if (whole) return static_cast<std::int64_t>(limited);
  return limited;
}

std::string moveSlider(const Application& application, Element& element, double direction) {
  const double before = attributeOf(element, "AXValue", 0);
  element.attributes["AXValue"] =
      withinLimits(element, before + direction * stepOf(application, element));
  return "moved " + described(element) + " from " + shortNumber(before) + " to " +
         shortNumber(attributeOf(element, "AXValue", 0));
}

}  // namespace simulator
