#pragma once

#include <optional>

#include "accessibility/snapshot.h"
#include "platform/ax.h"

namespace driver {

/// True for an element that takes text: by its role, or because it says so.
bool isTextInput(Snapshot& element);

/// True for a single-line field in a sheet, popover or dialog, whose content nobody misses.
bool isTransientField(Snapshot& field);

/// The application's focused element, if it is in the window scope; else the one text input in the
/// scope that has the focus of its window. None when there are several.
std::optional<Snapshot> axFocused(const ax::Element& application);

}  // namespace driver
