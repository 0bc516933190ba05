#include "simulator/drawing/controls.h"

#include <algorithm>

namespace simulator {

namespace {

using Align = TextStyle::Align;

constexpr double oneLine = 30;  // points; a taller frame shows several lines

Rect inset(const Rect& rect, double x, double y) {
  return {rect.x + x, rect.y + y, std::max(rect.width - 2 * x, 0.0),
          std::max(rect.height - 2 * y, 0.0)};
}

Rect withoutLeft(const Rect& rect, double width) {
  return {rect.x + width, rect.y, std::max(rect.width - width, 0.0), rect.height};
}

Colour textColour(const ElementLook& look) {
  return look.enabled ? colours::text : Colour::grey(0.66);
}

TextStyle styleFor(const ElementLook& look) {
  TextStyle style;
  style.colour = textColour(look);
  return style;
}

std::string_view valueOrLabel(const ElementLook& look) {
  return look.text.empty() ? look.label : look.text;
}

std::string_view labelOrValue(const ElementLook& look) {
  return look.label.empty() ? look.text : look.label;
}

void drawRaised(Canvas& canvas, const ElementLook& look, double radius) {
  const Rect& frame = look.frame;
  canvas.fill({frame.x, frame.y + 0.75, frame.width, frame.height}, radius, Colour::grey(0, 0.10));
  const Colour top = look.hovered ? Colour{0.90, 0.95, 1, 1} : colours::white;
  const Colour bottom = look.hovered ? Colour{0.82, 0.90, 1, 1} : Colour::grey(0.955);
  canvas.fill(frame, radius, look.enabled ? top : Colour::grey(0.965),
              look.enabled ? bottom : Colour::grey(0.955));
  canvas.stroke(frame, radius, 0.75, look.hovered ? colours::accent.withAlpha(0.6) : colours::edge);
}

void drawButton(Canvas& canvas, const ElementLook& look) {
  drawRaised(canvas, look, 6);
  TextStyle style = styleFor(look);
  style.align = Align::centre;
  canvas.text(inset(look.frame, 4, 0), labelOrValue(look), style);
}

void drawChevrons(Canvas& canvas, Point centre, Colour colour) {
  for (const double direction : {-1.0, 1.0}) {
    const double y = centre.y + direction * 2.2;
    canvas.line({centre.x - 2.5, y}, {centre.x, y + direction * 2.5}, 1.3, colour);
    canvas.line({centre.x, y + direction * 2.5}, {centre.x + 2.5, y}, 1.3, colour);
  }
}

void drawPopUpButton(Canvas& canvas, const ElementLook& look) {
  drawRaised(canvas, look, 6);
  const Rect& frame = look.frame;
  const double side = std::min(frame.height - 6, 16.0);
  const Rect box{frame.x + frame.width - side - 3, frame.y + (frame.height - side) / 2, side, side};
  canvas.fill(box, 4, look.enabled ? colours::accent : Colour::grey(0.8));
  drawChevrons(canvas, {box.x + side / 2, box.y + side / 2}, colours::white);
  Rect textFrame = withoutLeft(frame, 8);
  textFrame.width = std::max(textFrame.width - side - 8, 0.0);
  canvas.text(textFrame, valueOrLabel(look), styleFor(look));
}

Rect leadingSquare(const Rect& frame, double side) {
  const double fitted = std::min({side, frame.width, frame.height});
  return {frame.x, frame.y + (frame.height - fitted) / 2, fitted, fitted};
}

void drawSwitchLabel(Canvas& canvas, const ElementLook& look, double width) {
  canvas.text(withoutLeft(look.frame, width + 6), look.label, styleFor(look));
}

void drawMarkBox(Canvas& canvas, const ElementLook& look, const Rect& box, double radius) {
  if (look.level > 0) {
    canvas.fill(box, radius, look.enabled ? colours::accent : Colour::grey(0.75));
  } else {
    canvas.fill(box, radius, colours::white);
    canvas.stroke(box, radius, 1, Colour::grey(0, look.enabled ? 0.28 : 0.14));
  }
  if (look.hovered)
    canvas.stroke(inset(box, -2, -2), radius + 2, 1.5, colours::accent.withAlpha(0.4));
}

void drawCheckBox(Canvas& canvas, const ElementLook& look) {
  const Rect box = leadingSquare(look.frame, 14);
  drawMarkBox(canvas, look, box, 3.5);
  if (look.level > 0) {
    const auto at = [&](double x, double y) {
      return Point{box.x + box.width * x, box.y + box.height * y};
    };
    canvas.line(at(0.24, 0.54), at(0.43, 0.74), 1.8, colours::white);
    canvas.line(at(0.43, 0.74), at(0.77, 0.27), 1.8, colours::white);
  }
  drawSwitchLabel(canvas, look, box.width);
}

void drawRadioButton(Canvas& canvas, const ElementLook& look) {
  const Rect box = leadingSquare(look.frame, 14);
  drawMarkBox(canvas, look, box, box.width / 2);
  if (look.level > 0) {
    canvas.circle({box.x + box.width / 2, box.y + box.height / 2}, 2.8, colours::white);
  }
  drawSwitchLabel(canvas, look, box.width);
}

void drawSwitch(Canvas& canvas, const ElementLook& look) {
  const double height = std::min(look.frame.height, 16.0);
  const Rect track{look.frame.x, look.frame.y + (look.frame.height - height) / 2, height * 1.7,
                   height};
  const bool on = look.level > 0;
  canvas.fill(track, height / 2, on ? colours::accent : Colour::grey(0.82));
  if (look.hovered) canvas.stroke(track, height / 2, 1.5, Colour::grey(0, 0.25));
  const double x = on ? track.x + track.width - height / 2 : track.x + height / 2;
  canvas.circle({x, track.y + height / 2}, height / 2 - 1.5, colours::white);
  drawSwitchLabel(canvas, look, track.width);
}

void drawFieldFrame(Canvas& canvas, const ElementLook& look, double radius, bool key) {
  if (look.focused) {
    const Colour ring = key ? colours::accent.withAlpha(0.45) : Colour::grey(0.45, 0.35);
    canvas.fill(inset(look.frame, -3, -3), radius + 3, ring);
  }
  canvas.fill(look.frame, radius, look.enabled ? colours::white : Colour::grey(0.96));
  canvas.stroke(look.frame, radius, 0.75,
                look.hovered ? colours::accent.withAlpha(0.6) : colours::edge);
}

void drawEditedText(Canvas& canvas, const Rect& frame, const ElementLook& look, bool wrapped,
                    double scroll) {
  TextStyle style = styleFor(look);
  style.wrapped = wrapped;
  if (look.text.empty()) {
    TextStyle faint = style;
    faint.colour = colours::faintText;
    canvas.text(frame, look.label, faint);
  }
  TextEditing editing;
  editing.caret = look.focused;
  editing.selection = look.selection;
  editing.scroll = scroll;
  editing.selectionColour = colours::selection;
  canvas.editedText(frame, look.text, style, editing);
}

void drawTextField(Canvas& canvas, const ElementLook& look, bool key) {
  drawFieldFrame(canvas, look, 5, key);
  drawEditedText(canvas, inset(look.frame, 7, 1), look, false, 0);
}

void drawSearchField(Canvas& canvas, const ElementLook& look, bool key) {
  drawFieldFrame(canvas, look, look.frame.height / 2, key);
  const Point lens{look.frame.x + 13, look.frame.y + look.frame.height / 2 - 1};
  canvas.stroke({lens.x - 4.5, lens.y - 4.5, 9, 9}, 4.5, 1.4, colours::faintText);
  canvas.line({lens.x + 3, lens.y + 3}, {lens.x + 6, lens.y + 6}, 1.6, colours::faintText);
  drawEditedText(canvas, withoutLeft(inset(look.frame, 7, 1), 17), look, false, 0);
}

void drawTextArea(Canvas& canvas, const ElementLook& look, bool key, double scroll) {
  drawFieldFrame(canvas, look, 5, key);
  drawEditedText(canvas, inset(look.frame, 9, 7), look, look.frame.height > oneLine, scroll);
}

void drawStaticText(Canvas& canvas, const ElementLook& look, double size, bool bold) {
  TextStyle style = styleFor(look);
  style.size = size;
  style.bold = bold;
  style.wrapped = look.frame.height > oneLine;
  canvas.text(look.frame, valueOrLabel(look), style);
}

void drawLink(Canvas& canvas, const ElementLook& look) {
  TextStyle style = styleFor(look);
  style.colour = look.enabled ? Colour{0.0, 0.38, 0.85, 1} : Colour::grey(0.66);
  style.underlined = look.hovered;
  canvas.text(look.frame, labelOrValue(look), style);
}

void drawRow(Canvas& canvas, const ElementLook& look) {
  const Rect& frame = look.frame;
  TextStyle style = styleFor(look);
  if (look.selected) {
    canvas.fill(inset(frame, 2, 1), 5, colours::accent);
    style.colour = colours::white;
  } else if (look.hovered) {
    canvas.fill(inset(frame, 2, 1), 5, colours::accent.withAlpha(0.12));
  }
  const double bottom = frame.y + frame.height - 0.25;
  canvas.line({frame.x + 10, bottom}, {frame.x + frame.width - 10, bottom}, 0.5,
              colours::faintEdge);
  canvas.text(inset(frame, 10, 0), labelOrValue(look), style);
}

void drawList(Canvas& canvas, const ElementLook& look) {
  canvas.fill(look.frame, 6, colours::white);
  canvas.stroke(look.frame, 6, 0.75, colours::faintEdge);
}

/// Something that lies over the rest of its window.
void drawFloating(Canvas& canvas, const ElementLook& look, double radius) {
  const Rect& frame = look.frame;
  canvas.fill({frame.x - 2, frame.y, frame.width + 4, frame.height + 5}, radius + 2,
              Colour::grey(0, 0.12));
  canvas.fill(frame, radius, Colour::grey(0.985));
  canvas.stroke(frame, radius, 0.75, colours::edge);
}

void drawMenuItem(Canvas& canvas, const ElementLook& look) {
  const Rect& frame = look.frame;
  const std::string_view title = labelOrValue(look);
  if (title.empty()) {
    const double middle = frame.y + frame.height / 2;
    canvas.line({frame.x + 10, middle}, {frame.x + frame.width - 10, middle}, 0.75,
                colours::faintEdge);
    return;
  }
  TextStyle style = styleFor(look);
  if (look.hovered || look.selected) {
    canvas.fill(inset(frame, 4, 1), 4, colours::accent);
    style.colour = colours::white;
  }
  canvas.text(inset(frame, 12, 0), title, style);
}

void drawBar(Canvas& canvas, const ElementLook& look, double knob) {
  const Rect& frame = look.frame;
  const double middle = frame.y + frame.height / 2;
  const Rect track{frame.x + knob, middle - 2, std::max(frame.width - 2 * knob, 0.0), 4};
  const double x = track.x + track.width * look.level;
  canvas.fill(track, 2, Colour::grey(0.82));
  canvas.fill({track.x, track.y, x - track.x, 4}, 2,
              look.enabled ? colours::accent : Colour::grey(0.7));
  if (knob <= 0) return;
  canvas.circle({x, middle + 0.75}, knob + 0.5, Colour::grey(0, 0.18));
  canvas.circle({x, middle}, knob, look.hovered ? Colour{0.85, 0.92, 1, 1} : colours::white);
}

void drawImage(Canvas& canvas, const ElementLook& look) {
  const Rect& frame = look.frame;
  const Clip clip(canvas, frame, 6);
  canvas.fill(frame, 0, Colour{0.74, 0.87, 0.98, 1}, Colour{0.93, 0.96, 0.99, 1});
  const double size = std::min(frame.width, frame.height);
  canvas.circle({frame.x + frame.width * 0.76, frame.y + frame.height * 0.28}, size * 0.1,
                {1, 0.83, 0.36, 1});
  const double ground = frame.y + frame.height;
  canvas.circle({frame.x + frame.width * 0.28, ground + size * 0.25}, size * 0.6,
                {0.50, 0.74, 0.60, 1});
  canvas.circle({frame.x + frame.width * 0.8, ground + size * 0.4}, size * 0.62,
                {0.38, 0.64, 0.53, 1});
  if (frame.height < 60) return;
  TextStyle style;
  style.size = 11;
  style.align = Align::centre;
  style.colour = Colour::grey(1);
  canvas.text({frame.x + 6, ground - 22, frame.width - 12, 18}, look.label, style);
}

void drawTab(Canvas& canvas, const ElementLook& look) {
  const bool current = look.selected || look.level > 0;
  if (current || look.hovered) {
    canvas.fill(look.frame, 6, current ? colours::white : Colour::grey(0, 0.06));
    canvas.stroke(look.frame, 6, 0.75, colours::faintEdge);
  }
  TextStyle style = styleFor(look);
  style.align = Align::centre;
  canvas.text(inset(look.frame, 6, 0), labelOrValue(look), style);
}

void drawDisclosure(Canvas& canvas, const ElementLook& look) {
  const Rect box = leadingSquare(look.frame, 12);
  const Colour colour = look.hovered ? colours::accent : Colour::grey(0.4);
  const Point centre{box.x + box.width / 2, box.y + box.height / 2};
  if (look.level > 0) {
    canvas.line({centre.x - 4, centre.y - 2}, {centre.x, centre.y + 2}, 1.6, colour);
    canvas.line({centre.x, centre.y + 2}, {centre.x + 4, centre.y - 2}, 1.6, colour);
  } else {
    canvas.line({centre.x - 2, centre.y - 4}, {centre.x + 2, centre.y}, 1.6, colour);
    canvas.line({centre.x + 2, centre.y}, {centre.x - 2, centre.y + 4}, 1.6, colour);
  }
  drawSwitchLabel(canvas, look, box.width);
}

/// The thumb alone, and that only where there is something to scroll.
void drawScrollBar(Canvas& canvas, const ElementLook& look) {
  if (!look.enabled) return;
  constexpr double breadth = 7;
  const Rect& frame = look.frame;
  const bool isVertical = frame.height > frame.width;
  const double way = isVertical ? frame.height : frame.width;
  const double length = std::min(60.0, way / 2);
  const double begin = 2 + std::max(way - length - 4, 0.0) * look.level;
  const Rect thumb = isVertical ? Rect{frame.x + 4, frame.y + begin, breadth, length}
                                : Rect{frame.x + begin, frame.y + 4, length, breadth};
  canvas.fill(thumb, breadth / 2, Colour::grey(0, 0.38));
}

void drawBox(Canvas& canvas, const ElementLook& look) {
  canvas.fill(look.frame, 7, Colour::grey(0, 0.025));
  canvas.stroke(look.frame, 7, 0.75, Colour::grey(0, 0.07));
  if (look.label.empty() || look.frame.height < 14) return;
  TextStyle style = styleFor(look);
  style.size = 11;
  style.colour = colours::faintText;
  canvas.text({look.frame.x + 9, look.frame.y + 3, look.frame.width - 18,
               std::min(look.frame.height - 3, 16.0)},
              look.label, style);
}

}  // namespace

void drawControl(Canvas& canvas, const ElementLook& look, bool windowIsKey, double scroll) {
  switch (look.control) {
    case Control::box:
      return drawBox(canvas, look);
    case Control::button:
      return drawButton(canvas, look);
    case Control::popUpButton:
      return drawPopUpButton(canvas, look);
    case Control::checkBox:
      return drawCheckBox(canvas, look);
    case Control::radioButton:
      return drawRadioButton(canvas, look);
    case Control::switchButton:
      return drawSwitch(canvas, look);
    case Control::textField:
      return drawTextField(canvas, look, windowIsKey);
    case Control::searchField:
      return drawSearchField(canvas, look, windowIsKey);
    case Control::textArea:
      return drawTextArea(canvas, look, windowIsKey, scroll);
    case Control::staticText:
      return drawStaticText(canvas, look, 13, false);
    case Control::heading:
      return drawStaticText(canvas, look, 20, true);
    case Control::link:
      return drawLink(canvas, look);
    case Control::row:
      return drawRow(canvas, look);
    case Control::list:
      return drawList(canvas, look);
    case Control::page:
      return canvas.fill(look.frame, 0, colours::white);
    case Control::slider:
      return drawBar(canvas, look, 8);
    case Control::progress:
      return drawBar(canvas, look, 0);
    case Control::image:
      return drawImage(canvas, look);
    case Control::tab:
      return drawTab(canvas, look);
    case Control::disclosure:
      return drawDisclosure(canvas, look);
    case Control::menu:
      return drawFloating(canvas, look, 6);
    case Control::menuItem:
      return drawMenuItem(canvas, look);
    case Control::popover:
      return drawFloating(canvas, look, 10);
    case Control::scrollBar:
      return drawScrollBar(canvas, look);
  }
}

}  // namespace simulator
