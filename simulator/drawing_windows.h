#pragma once

#include "simulator/drawing_canvas.h"
#include "simulator/drawing_look.h"

namespace simulator {

/// Draws a window with its shadow and all that is in it.
void drawWindow(Canvas& canvas, const WindowLook& look);

}  // namespace simulator
