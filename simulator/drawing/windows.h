#pragma once

#include "simulator/drawing/canvas.h"
#include "simulator/drawing/look.h"

namespace simulator {

/// Draws a window with its shadow and all that is in it.
void drawWindow(Canvas& canvas, const WindowLook& look);

}  // namespace simulator
