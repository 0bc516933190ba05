#pragma once

#include <string>

#include "platform/cover.h"
#include "simulator/drawing/canvas.h"
#include "simulator/drawing/picture.h"
#include "simulator/world/cover.h"

namespace simulator {

/// The size of a label that fits the text in one line, in whole points.
Size labelSize(const std::string& text, const cover::Font& font);

/// Draws a cover over what has been drawn so far, which shines through it, blurred and dark.
void drawCover(Canvas& canvas, const Cover& cover);

/// Draws the login window over all displays.
void drawLockScreen(Canvas& canvas, const Picture& picture);

/// Draws a picture that has no pixels: a friendly face, a person, or an application's icon, in
/// colours of its own. The frame is a square.
void drawPortrait(Canvas& canvas, const Portrait& portrait, const Rect& frame);

}  // namespace simulator
