#include "simulator/drawing/windows.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "simulator/drawing/controls.h"
#include "simulator/drawing/desktop.h"

namespace simulator {

namespace {

constexpr double titleBarHeight = 28;
constexpr double radius = 10;
constexpr double pointsPerLine = 17;

void drawRings(Canvas& canvas, const WindowLook& look) {
  const int steps = look.key ? 14 : 9;
  const double strength = look.key ? 0.034 : 0.026;
  const Rect& frame = look.frame;
  for (int step = steps; step > 0; --step) {
    const double reach = step * 2.0;
    const Rect ring{frame.x - reach, frame.y - reach + steps * 0.6, frame.width + 2 * reach,
                    frame.height + 2 * reach};
    canvas.fill(ring, radius + reach, Colour::grey(0, strength * (1.0 - step / (steps + 1.0))));
  }
}

void drawShadow(Canvas& canvas, const WindowLook& look) {
  // Under the window nobody sees it, and there it would take most of the time of all drawing.
  const Rect& frame = look.frame;
  const Rect hidden{frame.x + radius, frame.y + radius, frame.width - 2 * radius,
                    frame.height - 2 * radius};
  drawAround(canvas, hidden, [&] { drawRings(canvas, look); });
}

void drawTrafficLights(Canvas& canvas, const WindowLook& look) {
  constexpr Colour lights[] = {{1, 0.37, 0.34, 1}, {1, 0.74, 0.18, 1}, {0.16, 0.78, 0.25, 1}};
  double x = look.frame.x + 16;
  for (const Colour& light : lights) {
    const Point centre{x, look.frame.y + titleBarHeight / 2};
    canvas.circle(centre, 6, look.key ? Colour::grey(0, 0.12) : Colour::grey(0, 0.05));
    canvas.circle(centre, 5.5, look.key ? light : Colour::grey(0.82));
    x += 20;
  }
}

TextStyle titleStyle(const WindowLook& look) {
  TextStyle style;
  style.bold = true;
  style.colour = look.key ? Colour::grey(0.2) : Colour::grey(0.6);
  return style;
}

void drawTitleBar(Canvas& canvas, const WindowLook& look) {
  const Rect& frame = look.frame;
  const Rect bar{frame.x, frame.y, frame.width, titleBarHeight};
  canvas.fill(bar, 0, look.key ? Colour::grey(0.955) : Colour::grey(0.965),
              look.key ? Colour::grey(0.915) : Colour::grey(0.955));
  canvas.fill({frame.x, frame.y + titleBarHeight - 0.5, frame.width, 0.5}, 0, colours::edge);
  TextStyle style = titleStyle(look);
  style.align = TextStyle::Align::centre;
  canvas.text({frame.x + 76, frame.y, frame.width - 152, titleBarHeight}, look.title, style);
}

/// A browser shows its title in a tab.
void drawTabStrip(Canvas& canvas, const WindowLook& look) {
  const Rect& frame = look.frame;
  canvas.fill({frame.x, frame.y, frame.width, titleBarHeight}, 0,
              look.key ? Colour{0.83, 0.88, 0.95, 1} : Colour{0.90, 0.93, 0.96, 1});
  const Rect tab{frame.x + 76, frame.y + 5, std::min(frame.width - 90, 220.0), titleBarHeight - 5};
  if (tab.width < 30) return;
  const Clip clip(canvas, {tab.x, tab.y, tab.width, tab.height}, 0);
  canvas.fill({tab.x, tab.y, tab.width, tab.height + radius}, 8, Colour::grey(0.97));
  canvas.circle({tab.x + 15, tab.y + tab.height / 2}, 5, {0.45, 0.62, 0.87, 1});
  TextStyle style = titleStyle(look);
  style.bold = false;
  style.size = 12;
  canvas.text({tab.x + 26, tab.y, tab.width - 36, tab.height}, look.title, style);
}

/// The contents begin in the middle of something larger, so that a scroll in any direction shows.
double thumbPlace(double lines) { return 0.5 - 0.5 * lines / (std::abs(lines) + 12); }

void drawScrollers(Canvas& canvas, const WindowLook& look) {
  constexpr double breadth = 7;
  constexpr double length = 60;
  constexpr Colour colour = Colour::grey(0, 0.38);
  const Rect& frame = look.frame;
  const double top = frame.y + (look.titleBar ? titleBarHeight : 0) + 4;
  if (look.scrolledLines.y != 0) {
    const double room = std::max(frame.y + frame.height - top - length - 4, 0.0);
    canvas.fill({frame.x + frame.width - breadth - 3, top + room * thumbPlace(look.scrolledLines.y),
                 breadth, length},
                breadth / 2, colour);
  }
  if (look.scrolledLines.x != 0) {
    const double room = std::max(frame.width - length - 8, 0.0);
    canvas.fill({frame.x + 4 + room * thumbPlace(look.scrolledLines.x),
                 frame.y + frame.height - breadth - 3, length, breadth},
                breadth / 2, colour);
  }
}

constexpr Colour violet{0.51, 0.27, 0.90, 1};
constexpr double frameWidth = 3;
constexpr double labelHeight = 22;
constexpr double indicatorRight = 130;  // from the right edge: left of the battery

/// A window in a frame: what the system shows for sharing.
void drawSymbol(Canvas& canvas, double x, double middle) {
  canvas.stroke({x, middle - 5, 14, 10}, 2.5, 1.4, Colour::grey(1));
  canvas.fill({x + 4, middle - 2, 6, 4}, 1, Colour::grey(1));
}

}  // namespace

void drawWindow(Canvas& canvas, const WindowLook& look) {
  drawShadow(canvas, look);
  {
    const Clip clip(canvas, look.frame, radius);
    const bool browser = look.kind == ApplicationKind::chromium;
    canvas.fill(look.frame, 0, Colour::grey(look.sheet ? 0.975 : browser ? 0.99 : 0.953));
    if (look.titleBar) {
      browser ? drawTabStrip(canvas, look) : drawTitleBar(canvas, look);
      drawTrafficLights(canvas, look);
    }
    const double scroll = -look.scrolledLines.y * pointsPerLine;
    for (const ElementLook& element : look.elements) {
      std::optional<Clip> sight;
      if (element.sight) sight.emplace(canvas, *element.sight, 0);
      drawControl(canvas, element, look.key, scroll);
    }
    drawScrollers(canvas, look);
  }
  canvas.stroke(look.frame, radius, 0.5, Colour::grey(0, 0.30));
}

void drawSharingMark(Canvas& canvas, const WindowLook& look) {
  const Rect& frame = look.frame;
  canvas.stroke({frame.x - frameWidth, frame.y - frameWidth, frame.width + 2 * frameWidth,
                 frame.height + 2 * frameWidth},
                radius + frameWidth, frameWidth, violet);
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
