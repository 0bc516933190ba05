#include "simulator/drawing/portraits.h"

#include <cmath>
#include <numbers>
#include <string>

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

}  // namespace simulator
