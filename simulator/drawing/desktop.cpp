#include "simulator/drawing/desktop.h"

#include <cmath>

namespace simulator {

namespace {

constexpr double rightHandRoom = 110;  // for the clock and what is beside it

struct Hill {
  double x;  // of its top, and all else, as a part of the display
  double y;
  double radius;
  Colour top;
  Colour bottom;
};

// From the back to the front.
constexpr Hill hills[] = {
    {0.22, 0.58, 0.62, {0.56, 0.36, 0.72, 0.85}, {0.30, 0.24, 0.58, 0.9}},
    {0.86, 0.64, 0.60, {0.90, 0.45, 0.55, 0.75}, {0.45, 0.26, 0.56, 0.9}},
    {0.50, 0.78, 0.80, {0.30, 0.34, 0.72, 0.85}, {0.14, 0.18, 0.46, 0.95}},
    {0.05, 0.88, 0.55, {0.18, 0.30, 0.62, 0.9}, {0.08, 0.13, 0.34, 1}},
};

void drawWallpaper(Canvas& canvas, const Rect& display) {
  const Clip clip(canvas, display, 0);
  canvas.fill(display, 0, {0.27, 0.46, 0.83, 1}, {0.98, 0.68, 0.56, 1});
  for (const Hill& hill : hills) {
    const double radius = hill.radius * display.width;
    const Rect circle{display.x + hill.x * display.width - radius,
                      display.y + hill.y * display.height, 2 * radius, 2 * radius};
    canvas.fill(circle, radius, hill.top, hill.bottom);
  }
}

double drawMenuTitle(Canvas& canvas, double x, double y, const std::string& title, bool bold) {
  TextStyle style;
  style.bold = bold;
  style.colour = Colour::grey(0.08);
  const double width = canvas.textWidth(title, style);
  canvas.text({x, y, width + 1, menuBarHeight}, title, style);
  return x + width + 20;
}

void drawBattery(Canvas& canvas, double x, double middle) {
  canvas.stroke({x, middle - 5.5, 22, 11}, 3, 1, Colour::grey(0.1, 0.75));
  canvas.fill({x + 2, middle - 3.5, 15, 7}, 1.5, Colour::grey(0.1, 0.85));
  canvas.fill({x + 23, middle - 2, 1.8, 4}, 0.9, Colour::grey(0.1, 0.6));
}

}  // namespace

void drawDesktop(Canvas& canvas, const std::vector<Rect>& displays) {
  canvas.fillAll(Colour::grey(0));
  for (const Rect& display : displays) drawWallpaper(canvas, display);
}

void drawMenuBar(Canvas& canvas, const Picture& picture) {
  if (picture.displays.empty()) return;
  const std::string& title = picture.menuBarTitle;
  const Rect& display = picture.displays.front();
  const Rect bar{display.x, display.y, display.width, menuBarHeight};
  const Clip clip(canvas, bar, 0);
  canvas.fill(bar, 0, Colour::grey(1, 0.72));
  const double middle = display.y + menuBarHeight / 2;
  canvas.stroke({display.x + 15, middle - 6, 12, 12}, 4, 2.4, Colour::grey(0.1));
  double x = display.x + 42;
  if (!title.empty()) {
    x = drawMenuTitle(canvas, x, display.y, title, true);
    const std::vector<std::string> usual = {"File", "Edit", "View", "Window", "Help"};
    for (const std::string& menu : picture.menuTitles.empty() ? usual : picture.menuTitles) {
      x = drawMenuTitle(canvas, x, display.y, menu, false);
    }
  }
  const double right = display.x + display.width;
  if (x > right - rightHandRoom) return;
  drawBattery(canvas, right - 92, middle);
  drawMenuTitle(canvas, right - 52, display.y, "09:41", false);
}

void drawPointer(Canvas& canvas, Point tip) {
  if (!std::isfinite(tip.x) || !std::isfinite(tip.y)) return;
  constexpr Point outline[] = {{0, 0},      {0, 16.5}, {3.8, 13},   {6.4, 19},
                               {9.2, 17.8}, {6.6, 12}, {11.6, 11.8}};
  cairo_t* context = canvas.context();
  cairo_new_path(context);
  for (const Point& corner : outline) {
    cairo_line_to(context, tip.x + corner.x, tip.y + corner.y);
  }
  cairo_close_path(context);
  cairo_set_source_rgb(context, 0, 0, 0);
  cairo_fill_preserve(context);
  cairo_set_source_rgb(context, 1, 1, 1);
  cairo_set_line_width(context, 1.3);
  cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
  cairo_stroke(context);
}

}  // namespace simulator
