#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/world/world.h"

/// Controls that do more than react to a press: menus, which open and close, and sliders.
namespace simulator {

/// Where the closed menus of the menu bar are kept, far off screen; in global points.
inline constexpr Point parkedMenus{0, 30'000};

/// The height of a menu's item, in points.
inline constexpr double menuItemHeight = 22;

/// The menu that the element opens: the first AXMenu among its children, or a combo box's list. 0:
/// it has none.
ElementId menuOf(const Application& application, const Element& element);

/// Whose menu a press of the element opens or closes: its own, or for a combo box's button that
/// one's. Null when it is no such button.
const Element* openerFor(const Application& application, const Element& element);

/// An item of a menu, or of a combo box's list: a press chooses it.
bool isItem(const Application& application, const Element& element);

/// The element is in the menu that is open, or is that menu.
bool isInOpenMenu(const Application& application, const Element& element);

/// Opens the element's menu instead of any other, or closes it when it is open. False when the
/// element has none.
bool toggleMenu(Application& application, const Element& element);

/// The enabled item of the menu bar with this key equivalent, if there is one: a character as
/// AXMenuItemCmdChar has it, letters in upper case, and modifiers as AXMenuItemCmdModifiers has
/// them. 0: none.
ElementId itemWithShortcut(const Application& application, std::string_view character,
                           std::int64_t modifiers);

/// A menu's item is chosen: menus close, and a pop-up button shows the item's title as its value.
void chooseItem(Application& application, ElementId item);

/// What a slider shows when it is to show `value`: not beyond its limits, and whole when it held a
/// whole number before and the value is one.
AttributeValue withinLimits(const Element& slider, double value);

/// Moves the slider by a step, up for a `direction` of 1 and down for -1. Gives a sentence for the
/// journal.
std::string moveSlider(const Application& application, Element& slider, double direction);

}  // namespace simulator
