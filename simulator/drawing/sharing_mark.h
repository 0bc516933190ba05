#pragma once

#include "simulator/drawing/canvas.h"
#include "simulator/drawing/look.h"

namespace simulator {

/// The system's mark on a window that is shared: a frame around it, and under its upper edge what
/// the sharing is called.
void drawSharingMark(Canvas& canvas, const WindowLook& look);

/// The sign in the menu bar that something is being shared.
void drawSharingIndicator(Canvas& canvas, const Picture& picture);

}  // namespace simulator
