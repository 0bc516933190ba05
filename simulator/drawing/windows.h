#pragma once

#include "simulator/drawing/canvas.h"
#include "simulator/drawing/look.h"

namespace simulator {

/// Draws a window with its shadow and all that is in it.
void drawWindow(Canvas& canvas, const WindowLook& look);

/// The system's mark on a window that is shared: a frame around it, and under its upper edge what
/// the sharing is called.
void drawSharingMark(Canvas& canvas, const WindowLook& look);

/// The sign in the menu bar that something is being shared.
void drawSharingIndicator(Canvas& canvas, const Picture& picture);

}  // namespace simulator
