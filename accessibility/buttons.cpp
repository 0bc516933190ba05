#include "accessibility/buttons.h"

#include <utility>

namespace driver {

std::optional<Button> buttonIn(Snapshot& element) {
  if (element.role() != "AXButton") return std::nullopt;
  std::string label = axLabel(element);
  if (label.empty()) return std::nullopt;
  return Button{element.element(), std::move(label)};
}

}  // namespace driver
