#include "simulator/world/menus.h"

#include <algorithm>

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

}  // namespace

ElementId menuOf(const Application& application, const Element& element) {
  const auto found =
      std::find_if(element.children.begin(), element.children.end(), [&](ElementId id) {
        const Element* child = findElement(application, id);
        return child != nullptr && child->role == "AXMenu";
      });
  return found == element.children.end() ? 0 : *found;
}

bool isInOpenMenu(const Application& application, const Element& element) {
  return application.openMenu != 0 && element.dependsOn == application.openMenu;
}

bool toggleMenu(Application& application, const Element& element) {
  const ElementId menu = menuOf(application, element);
  if (menu == 0) return false;
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
    const auto key = each.attributes.find("AXMenuItemCmdChar");
    if (key == each.attributes.end()) return false;
    const auto* held = std::get_if<std::string>(&key->second);
    const auto mask = each.attributes.find("AXMenuItemCmdModifiers");
    const auto needed = mask == each.attributes.end() ? 0.0 : numberOf(mask->second).value_or(0);
    return held != nullptr && *held == character && needed == static_cast<double>(modifiers);
  });
  return found == elements.end() ? 0 : found->id;
}

void chooseItem(Application& application, ElementId id) {
  application.openMenu = 0;
  const Element& item = *findElement(application, id);
  const Element* owner = ownerOf(application, item);
  if (owner == nullptr || owner->role != "AXPopUpButton") return;
  const auto title = item.attributes.find("AXTitle");
  if (title == item.attributes.end()) return;
  findElement(application, owner->id)->attributes["AXValue"] = title->second;
}

}  // namespace simulator
