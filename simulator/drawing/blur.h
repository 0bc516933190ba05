#pragma once

#include "simulator/drawing/canvas.h"

namespace simulator {

/// Blurs what has been drawn within the rectangle, as frosted glass over it would. `reach` is how
/// far a point spreads, in points. The same picture gives the same pixels on every machine.
void blur(Canvas& canvas, const Rect& rect, double reach);

}  // namespace simulator
