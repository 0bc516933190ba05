#pragma once

#include "simulator/drawing/canvas.h"
#include "simulator/drawing/look.h"

namespace simulator {

/// Draws an element of a window. `scroll` is how far, in points, text areas are scrolled down.
void drawControl(Canvas& canvas, const ElementLook& look, bool windowIsKey, double scroll);

}  // namespace simulator
