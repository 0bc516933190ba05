#pragma once

#include <optional>
#include <string>

#include "accessibility/snapshot.h"
#include "accessibility/walk.h"
#include "platform/ax.h"

namespace driver {

/// A button that has a label.
struct Button {
  ax::Element element;
  std::string label;  // not empty
};

/// The bounds of the search for all buttons in and below an element.
inline constexpr WalkBounds buttonBounds = {20'000, 30};

/// The element as a button; none when it is something else, or without a label.
std::optional<Button> buttonIn(Snapshot& element);

}  // namespace driver
