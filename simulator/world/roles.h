#pragma once

#include <string_view>

/// What an element's role says about it.
namespace simulator {

/// It is a window of its own: AXWindow or AXSheet.
constexpr bool isWindowRole(std::string_view role) {
  return role == "AXWindow" || role == "AXSheet";
}

/// It takes text from the keyboard.
constexpr bool takesText(std::string_view role) {
  return role == "AXTextArea" || role == "AXTextField" || role == "AXComboBox" ||
         role == "AXSearchField";
}

/// Its value is 0 or 1.
constexpr bool isSwitchRole(std::string_view role) {
  return role == "AXCheckBox" || role == "AXRadioButton" || role == "AXSwitch";
}

/// It offers AXPress.
constexpr bool isPressable(std::string_view role) {
  return isSwitchRole(role) || role == "AXButton" || role == "AXLink" || role == "AXRow" ||
         role == "AXMenuItem" || role == "AXMenuBarItem" || role == "AXMenuButton" ||
         role == "AXPopUpButton" || role == "AXTab" || role == "AXDisclosureTriangle";
}

}  // namespace simulator
