#pragma once

#include <string_view>

#include "simulator/world/world.h"

/// What keys make of marked text.
namespace simulator {

/// The text goes. References to elements are void from then on.
void cancelMarked(Application& application);

/// Marked text grows by a text; where there is none it begins at the caret, in place of what is
/// selected. References to elements are void from then on.
void addMarked(Application& application, ElementId field, std::string_view text, bool isDeadKey);

/// The letter with the accent that is marked by a dead key comes in its place; what has none with
/// it comes behind it. References to elements are void from then on.
void typeBehindDeadKey(Application& application, ElementId field, std::string_view letter);

}  // namespace simulator
