#include "simulator/drawing/covers.h"

#include <cmath>

#include "simulator/drawing/blur.h"
#include "simulator/drawing/desktop.h"
#include "simulator/drawing/portraits.h"

namespace simulator {

namespace {

constexpr double blurReach = 120;   // points
constexpr double labelMargin = 4;   // on both sides together, as the system's labels have it
constexpr double lineHeight = 1.2;  // of a label, as a part of its font's size
constexpr double overhang = 8;      // points that letters may reach beyond their label
constexpr double borderWidth = 2;   // of a round picture
constexpr Colour tint{0.09, 0.09, 0.13, 0.55};
constexpr Colour border = Colour::grey(1, 0.85);

TextStyle styleOf(const cover::Font& font) {
  TextStyle style;
  style.size = font.size;
  style.bold = font.weight == cover::Weight::semibold;
  style.align = TextStyle::Align::centre;
  return style;
}

/// A place on a cover, as global points.
Rect placed(const Cover& cover, const Rect& rect) {
  return {cover.frame.x + rect.x, cover.frame.y + cover.frame.height - rect.y - rect.height,
          rect.width, rect.height};
}

void drawPicture(Canvas& canvas, const Cover& cover, const CoverPicture& picture) {
  const Rect frame = placed(cover, picture.frame);
  const double radius = picture.isRound ? frame.width / 2 : 0;
  {
    const Clip clip(canvas, frame, radius);
    drawPortrait(canvas, picture.portrait, frame);
  }
  if (picture.isRound) canvas.stroke(frame, radius, borderWidth, border);
}

void drawLabel(Canvas& canvas, const Cover& cover, const cover::Label& label) {
  TextStyle style = styleOf(label.font);
  style.colour = Colour::grey(1, label.alpha);
  const Rect frame = placed(cover, label.frame);
  canvas.text({frame.x, frame.y - overhang, frame.width, frame.height + 2 * overhang}, label.text,
              style);
}

void drawCentred(Canvas& canvas, const Rect& display, double y, double size, bool bold,
                 const std::string& text, double alpha) {
  TextStyle style;
  style.size = size;
  style.bold = bold;
  style.align = TextStyle::Align::centre;
  style.colour = Colour::grey(1, alpha);
  canvas.text({display.x, y, display.width, 2 * size}, text, style);
}

}  // namespace

Size labelSize(const std::string& text, const cover::Font& font) {
  Canvas canvas(1, 1, {0, 0, 1, 1});
  return {std::ceil(canvas.textWidth(text, styleOf(font))) + labelMargin,
          std::ceil(lineHeight * font.size)};
}

void drawCover(Canvas& canvas, const Cover& cover) {
  const Clip clip(canvas, cover.frame, 0);
  blur(canvas, cover.frame, blurReach);
  canvas.fill(cover.frame, 0, tint);
  canvas.fill(cover.frame, 0, Colour::grey(0, cover.dimmingAlpha));
  for (const CoverPicture& picture : cover.pictures) drawPicture(canvas, cover, picture);
  for (const cover::Label& label : cover.labels) drawLabel(canvas, cover, label);
}

void drawLockScreen(Canvas& canvas, const Picture& picture) {
  drawDesktop(canvas, picture.displays);
  for (const Rect& display : picture.displays) blur(canvas, display, blurReach);
  if (picture.displays.empty()) return;
  const Rect& display = picture.displays.front();
  const Rect portrait{display.x + display.width / 2 - 28, display.y + 0.76 * display.height - 56,
                      56, 56};
  drawCentred(canvas, display, display.y + 0.1 * display.height, 17, true, "Thursday, 1 January",
              0.9);
  drawCentred(canvas, display, display.y + 0.1 * display.height + 18, 72, true, "09:41", 0.95);
  {
    const Clip clip(canvas, portrait, portrait.width / 2);
    drawPortrait(canvas, {Portrait::Kind::photo, picture.userName}, portrait);
  }
  canvas.stroke(portrait, portrait.width / 2, 1.5, border);
  const double below = portrait.y + portrait.height;
  drawCentred(canvas, display, below + 4, 14, true, picture.userName, 0.95);
  const Rect field{display.x + display.width / 2 - 90, below + 38, 180, 28};
  canvas.fill(field, 14, Colour::grey(1, 0.22));
  drawCentred(canvas, display, field.y + 1, 13, false, "Enter Password", 0.75);
}

}  // namespace simulator
