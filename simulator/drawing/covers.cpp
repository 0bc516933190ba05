#include "simulator/drawing/covers.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <string>
#include <tuple>

#include "simulator/drawing/canvas.h"
#include "simulator/drawing/desktop.h"

namespace simulator {

namespace {

/// A number between 0 and 1 that is the same for the same name.
double chanceOf(const std::string& name) {
  std::uint32_t mixed = 2166136261U;
  for (const char c : name) mixed = (mixed ^ static_cast<unsigned char>(c)) * 16777619U;
  return static_cast<double>(mixed % 1000U) / 1000;
}

/// A colour of the wheel: bright, and as light as wanted.
Colour wheel(double turn, double light) {
  const auto part = [&](double offset) {
    return light + (1 - light) * 0.5 * (1 + std::cos(2 * std::numbers::pi * (turn + offset)));
  };
  return {part(0), part(-1.0 / 3), part(1.0 / 3), 1};
}

/// Places within a frame, as parts of its side.
class Box {
 public:
  Box(Canvas& canvas, const Rect& frame) : canvas_(canvas), frame_(frame) {}

  Point at(double x, double y) const {
    return {frame_.x + x * frame_.width, frame_.y + y * frame_.height};
  }
  double side(double part) const { return part * frame_.width; }
  Rect rect(double x, double y, double width, double height) const {
    const Point origin = at(x, y);
    return {origin.x, origin.y, side(width), side(height)};
  }
  void disc(double x, double y, double radius, Colour colour) const {
    canvas_.circle(at(x, y), side(radius), colour);
  }
  void pill(double x, double y, double width, double height, Colour colour) const {
    canvas_.fill(rect(x, y, width, height), side(std::min(width, height) / 2), colour);
  }
  /// A piece of a circle's edge below its centre.
  void smile(double x, double y, double radius, double thickness, Colour colour) const {
    cairo_t* const context = canvas_.context();
    const Point centre = at(x, y);
    cairo_new_sub_path(context);
    cairo_arc(context, centre.x, centre.y, side(radius), 0.2 * std::numbers::pi,
              0.8 * std::numbers::pi);
    cairo_set_source_rgba(context, colour.red, colour.green, colour.blue, colour.alpha);
    cairo_set_line_width(context, side(thickness));
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_stroke(context);
  }

 private:
  Canvas& canvas_;
  Rect frame_;
};

void drawFace(Canvas& canvas, const Portrait& portrait, const Rect& frame) {
  const Box box(canvas, frame);
  const double turn = 0.5 + 0.2 * chanceOf(portrait.name);
  const Colour dark{0.11, 0.09, 0.24, 1};
  box.disc(0.22, 0.26, 0.15, wheel(turn, 0.42));
  box.disc(0.78, 0.26, 0.15, wheel(turn, 0.42));
  canvas.fill(box.rect(0.08, 0.12, 0.84, 0.84), box.side(0.42), wheel(turn, 0.62),
              wheel(turn + 0.09, 0.3));
  box.pill(0.2, 0.36, 0.6, 0.38, Colour::grey(1, 0.94));
  box.pill(0.335, 0.44, 0.075, 0.15, dark);
  box.pill(0.59, 0.44, 0.075, 0.15, dark);
  box.disc(0.385, 0.475, 0.018, Colour::grey(1));
  box.disc(0.64, 0.475, 0.018, Colour::grey(1));
  box.smile(0.5, 0.56, 0.085, 0.025, dark);
  box.disc(0.29, 0.62, 0.04, {1, 0.55, 0.6, 0.55});
  box.disc(0.71, 0.62, 0.04, {1, 0.55, 0.6, 0.55});
}

void drawPhoto(Canvas& canvas, const Portrait& portrait, const Rect& frame) {
  const Box box(canvas, frame);
  const double turn = chanceOf(portrait.name);
  const Colour skin{0.96, 0.78, 0.66, 1};
  const Colour hair{0.26, 0.17, 0.14, 1};
  canvas.fill(frame, 0, wheel(turn, 0.7), wheel(turn + 0.12, 0.42));
  box.disc(0.5, 0.4, 0.25, hair);
  box.pill(0.25, 0.4, 0.5, 0.42, hair);
  box.pill(0.14, 0.74, 0.72, 0.6, wheel(turn + 0.45, 0.34));
  box.pill(0.42, 0.58, 0.16, 0.24, {0.88, 0.68, 0.56, 1});
  canvas.fill(box.rect(0.33, 0.25, 0.34, 0.43), box.side(0.17), skin);
  canvas.fill(box.rect(0.31, 0.2, 0.38, 0.14), box.side(0.07), hair);
  box.disc(0.435, 0.45, 0.021, hair);
  box.disc(0.565, 0.45, 0.021, hair);
  box.smile(0.5, 0.52, 0.07, 0.018, {0.66, 0.3, 0.3, 1});
}

/// The first letter of what the path names.
std::string initial(const std::string& path) {
  const std::size_t start = path.rfind('/') + 1;
  return start < path.size() ? path.substr(start, 1) : "?";
}

void drawIcon(Canvas& canvas, const Portrait& portrait, const Rect& frame) {
  const Box box(canvas, frame);
  const Rect tile = box.rect(0.06, 0.06, 0.88, 0.88);
  const double radius = box.side(0.2);
  canvas.fill(box.rect(0.06, 0.085, 0.88, 0.88), radius, Colour::grey(0, 0.25));
  canvas.fill(tile, radius, {0.36, 0.62, 1, 1}, {0.33, 0.22, 0.86, 1});
  canvas.stroke(tile, radius, box.side(0.012), Colour::grey(1, 0.35));
  TextStyle style;
  style.size = box.side(0.56);
  style.bold = true;
  style.align = TextStyle::Align::centre;
  style.colour = Colour::grey(1);
  canvas.text(tile, initial(portrait.name), style);
}

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

void drawPortrait(Canvas& canvas, const Portrait& portrait, const Rect& frame) {
  switch (portrait.kind) {
    case Portrait::Kind::face:
      return drawFace(canvas, portrait, frame);
    case Portrait::Kind::photo:
      return drawPhoto(canvas, portrait, frame);
    case Portrait::Kind::icon:
      return drawIcon(canvas, portrait, frame);
  }
}

// A text always measures the same, and to shape it takes longer than all else that a guard asks for
// before it covers the screens.
Size labelSize(const std::string& text, const cover::Font& font) {
  constexpr std::size_t knownMax = 1000;
  using Key = std::tuple<std::string, std::uint64_t, cover::Weight>;
  static std::map<Key, Size> known;
  const Key key(text, std::bit_cast<std::uint64_t>(font.size), font.weight);
  if (const auto found = known.find(key); found != known.end()) return found->second;
  Canvas canvas(1, 1, {0, 0, 1, 1});
  const Size size{std::ceil(canvas.textWidth(text, styleOf(font))) + labelMargin,
                  std::ceil(lineHeight * font.size)};
  if (known.size() == knownMax) known.clear();
  known[key] = size;
  return size;
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
