#pragma once

#include "simulator/drawing/canvas.h"

/// The few colours that controls, windows and the desktop share.
namespace simulator::colours {

inline constexpr Colour accent{0.04, 0.48, 1.0, 1};
inline constexpr Colour selection{0.70, 0.84, 1.0, 1};
inline constexpr Colour text = Colour::grey(0.13);
inline constexpr Colour faintText = Colour::grey(0.56);
inline constexpr Colour white = Colour::grey(1);
inline constexpr Colour edge = Colour::grey(0, 0.16);
inline constexpr Colour faintEdge = Colour::grey(0, 0.08);

}  // namespace simulator::colours
