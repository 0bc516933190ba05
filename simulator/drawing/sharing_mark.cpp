#include "simulator/drawing/sharing_mark.h"

#include <algorithm>

namespace simulator {

namespace {

constexpr Colour violet{0.51, 0.27, 0.90, 1};
constexpr double windowRadius = 10;
constexpr double frameWidth = 3;
constexpr double labelHeight = 22;
constexpr double titleBarHeight = 28;
constexpr double menuBarHeight = 24;
constexpr double indicatorRight = 130;  // from the right edge: left of the battery

/// A window in a frame: what the system shows for sharing.
void drawSymbol(Canvas& canvas, double x, double middle) {
  canvas.stroke({x, middle - 5, 14, 10}, 2.5, 1.4, Colour::grey(1));
  canvas.fill({x + 4, middle - 2, 6, 4}, 1, Colour::grey(1));
}

}  // namespace

void drawSharingMark(Canvas& canvas, const WindowLook& look) {
  const Rect& frame = look.frame;
  canvas.stroke({frame.x - frameWidth, frame.y - frameWidth, frame.width + 2 * frameWidth,
                 frame.height + 2 * frameWidth},
                windowRadius + frameWidth, frameWidth, violet);
  TextStyle style;
  style.size = 11.5;
  style.bold = true;
  style.colour = Colour::grey(1);
  const double wanted = canvas.textWidth(look.sharedAs, style) + 46;
  const double width = std::min(wanted, frame.width - 16);
  if (width < 40) return;
  const double top = frame.y + (look.titleBar ? titleBarHeight : 0) + 6;
  const Rect label{frame.x + (frame.width - width) / 2, top, width, labelHeight};
  canvas.fill(label, labelHeight / 2, violet.withAlpha(0.93));
  drawSymbol(canvas, label.x + 11, label.y + labelHeight / 2);
  canvas.text({label.x + 32, label.y, label.width - 42, labelHeight}, look.sharedAs, style);
}

void drawSharingIndicator(Canvas& canvas, const Picture& picture) {
  if (picture.displays.empty()) return;
  const Rect& display = picture.displays.front();
  const double x = display.x + display.width - indicatorRight;
  canvas.fill({x, display.y + 3, 28, menuBarHeight - 6}, 5, violet);
  drawSymbol(canvas, x + 7, display.y + menuBarHeight / 2);
}

}  // namespace simulator
