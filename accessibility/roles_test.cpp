#include "accessibility/roles.h"

#include <gtest/gtest.h>

#include <vector>

namespace driver {
namespace {

using Roles = std::vector<std::string_view>;

template <std::size_t count>
Roles listed(const std::array<std::string_view, count>& roles) {
  return Roles(roles.begin(), roles.end());
}

TEST(roles, are_these) {
  EXPECT_EQ(listed(actionableRoles),
            (Roles{"AXButton", "AXLink", "AXMenuItem", "AXMenuButton", "AXPopUpButton",
                   "AXCheckBox", "AXRadioButton", "AXTextArea", "AXTextField", "AXComboBox",
                   "AXSearchField", "AXRow", "AXCell", "AXTab", "AXDisclosureTriangle"}));
  EXPECT_EQ(listed(textRoles), (Roles{"AXTextArea", "AXTextField", "AXComboBox", "AXSearchField"}));
  EXPECT_EQ(listed(modalRoles), (Roles{"AXSheet", "AXDrawer"}));
  EXPECT_EQ(listed(modalSubroles), (Roles{"AXDialog", "AXSystemDialog", "AXApplicationDialog",
                                          "AXApplicationAlertDialog"}));
}

TEST(hasRole, compares_exactly) {
  EXPECT_TRUE(hasRole(textRoles, "AXComboBox"));
  for (const char* role : {"", "AX", "axcombobox", "AXComboBox ", "AXCombo", "AXStaticText"}) {
    EXPECT_FALSE(hasRole(textRoles, role)) << role;
  }
}

}  // namespace
}  // namespace driver
