#include "accessibility/attributes.h"

#include <array>

namespace driver {

namespace {

constexpr std::array<const char*, attributeCount> attributeNames = {"AXRole",
                                                                    "AXSubrole",
                                                                    "AXChildren",
                                                                    "AXTitle",
                                                                    "AXDescription",
                                                                    "AXPlaceholderValue",
                                                                    "AXHelp",
                                                                    "AXPosition",
                                                                    "AXSize",
                                                                    "AXEnabled",
                                                                    "AXEditable",
                                                                    "AXFocused",
                                                                    "AXModal",
                                                                    "AXParent",
                                                                    "AXWindow",
                                                                    "AXValue",
                                                                    "AXMinValue",
                                                                    "AXMaxValue",
                                                                    "AXSelectedTextRange",
                                                                    "AXMenuItemCmdChar",
                                                                    "AXMenuItemCmdModifiers"};

static_assert(attributeCount == static_cast<std::size_t>(Attribute::menuModifiers) + 1);

}  // namespace

const char* nameOf(Attribute attribute) {
  return attributeNames[static_cast<std::size_t>(attribute)];
}

Batch::Batch(AttributeSet set) : set_(set) {
  for (std::size_t i = 0; i < attributeCount; ++i) {
    if (set.contains(static_cast<Attribute>(i))) names_.push_back(attributeNames[i]);
  }
}

}  // namespace driver
