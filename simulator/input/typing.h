#pragma once

#include <cstdint>

#include "simulator/world/world.h"

/// What keys do to a field's text, selection and caret. Characters are code points.
namespace simulator {

enum class CaretMove { left, right, up, down, start, end };

/// Moves the caret; of a selection it goes to the nearer end. A line ends at a line feed.
void moveCaret(Element& field, CaretMove move);

/// Removes what is selected, or the character before the caret, or that behind it.
void deleteBackward(Application& application, ElementId field);
void deleteForward(Application& application, ElementId field);

/// Selects the whole text.
void selectAll(Element& field);

}  // namespace simulator
