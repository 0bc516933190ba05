#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// Lines of menus, and the elements that they make.
namespace simulator {

/// An item of the menu bar's menus.
struct MenuItemDraft {
  std::vector<std::string> path;         // from the menu bar's item on; at least one title
  std::optional<std::string> character;  // of its key equivalent
  std::int64_t modifiers = 0;            // as in AXMenuItemCmdModifiers
  bool disabled = false;
  bool alternate = false;  // it takes another's place while option is held
  std::vector<Reaction> onClick;
};

/// Reads a menu's line, behind its first word.
MenuItemDraft readMenuItem(Words& words);

/// Adds the item, with whatever of the menu bar and of the menus above it is not there yet.
ElementId addMenuItem(Application& application, const MenuItemDraft& draft);

/// Gives a pop-up button a closed menu with an item for each title. Nothing without titles.
void addChoices(Application& application, ElementId button, const std::vector<std::string>& titles);

/// The bars that `addMenuItem` made lie on the main display from then on.
void placeMenuBars(World& world);

}  // namespace simulator
