#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace driver {

/// Roles an agent can act on.
inline constexpr std::array<std::string_view, 15> actionableRoles = {
    "AXButton",      "AXLink",        "AXMenuItem", "AXMenuButton", "AXPopUpButton",
    "AXCheckBox",    "AXRadioButton", "AXTextArea", "AXTextField",  "AXComboBox",
    "AXSearchField", "AXRow",         "AXCell",     "AXTab",        "AXDisclosureTriangle"};

/// Roles of elements that take text.
inline constexpr std::array<std::string_view, 4> textRoles = {"AXTextArea", "AXTextField",
                                                              "AXComboBox", "AXSearchField"};

/// Roles and subroles of what lies modally over a window or an application.
inline constexpr std::array<std::string_view, 2> modalRoles = {"AXSheet", "AXDrawer"};
inline constexpr std::array<std::string_view, 4> modalSubroles = {
    "AXDialog", "AXSystemDialog", "AXApplicationDialog", "AXApplicationAlertDialog"};

/// True when `roles` has exactly this role.
template <std::size_t count>
constexpr bool hasRole(const std::array<std::string_view, count>& roles, std::string_view role) {
  return std::find(roles.begin(), roles.end(), role) != roles.end();
}

}  // namespace driver
