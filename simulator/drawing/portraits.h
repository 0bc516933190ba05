#pragma once

#include "simulator/drawing/canvas.h"
#include "simulator/world/cover.h"

namespace simulator {

/// Draws a picture that has no pixels: a friendly face, a person, or an application's icon, in
/// colours of its own. The frame is a square.
void drawPortrait(Canvas& canvas, const Portrait& portrait, const Rect& frame);

}  // namespace simulator
