#pragma once

#include <vector>

#include "simulator/drawing/canvas.h"
#include "simulator/drawing/picture.h"

namespace simulator {

inline constexpr double menuBarHeight = 24;  // points

/// Draws the wallpaper of every display; black is where there is none.
void drawDesktop(Canvas& canvas, const std::vector<Rect>& displays);

/// Draws the menu bar of the first display, with the front application's name and menus.
void drawMenuBar(Canvas& canvas, const Picture& picture);

/// Draws the arrow whose tip is at the point.
void drawPointer(Canvas& canvas, Point tip);

}  // namespace simulator
