#pragma once

#include <string>
#include <vector>

#include "accessibility/buttons.h"
#include "base/value.h"
#include "platform/ax.h"

namespace driver {

/// A sheet, drawer or dialog.
struct Modal {
  Value::Object info;   // its description, without a value
  std::string subrole;  // empty when it has none
  std::string text;     // the static texts in it, cut
  std::vector<Button> buttons;
};

/// The sheets, drawers and dialogs in the window scope, eight of them at most.
std::vector<Modal> axModalElements(const ax::Element& application);

}  // namespace driver
