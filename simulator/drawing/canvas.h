#pragma once

#include <cairo.h>
#include <pango/pangocairo.h>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ax.h"
#include "simulator/drawing/png.h"
#include "simulator/world/world.h"

namespace simulator {

struct Colour {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  static constexpr Colour grey(double level, double alpha = 1) {
    return {level, level, level, alpha};
  }
  constexpr Colour withAlpha(double value) const { return {red, green, blue, value}; }
};

/// The few colours that controls, windows and the desktop share.
namespace colours {

inline constexpr Colour accent{0.04, 0.48, 1.0, 1};
inline constexpr Colour selection{0.70, 0.84, 1.0, 1};
inline constexpr Colour text = Colour::grey(0.13);
inline constexpr Colour faintText = Colour::grey(0.56);
inline constexpr Colour white = Colour::grey(1);
inline constexpr Colour edge = Colour::grey(0, 0.16);
inline constexpr Colour faintEdge = Colour::grey(0, 0.08);

}  // namespace colours

struct TextStyle {
  enum class Align { left, centre };
  double size = 13;  // points
  bool bold = false;
  bool underlined = false;
  Align align = Align::left;
  /// Several lines from the top; else one line, in the middle of the frame.
  bool wrapped = false;
  Colour colour = Colour::grey(0.13);
};

/// What a text field shows besides its text.
struct TextEditing {
  bool caret = false;
  ax::Range selection;  // UTF-16 units
  double scroll = 0;    // points that a text of several lines is moved up
  Colour selectionColour;
};

/// A drawing surface whose coordinates are global points.
class Canvas {
 public:
  /// `source` is the part of the global space that fills the picture; not empty.
  Canvas(std::uint64_t width, std::uint64_t height, const Rect& source);

  /// Cairo's own context, for shapes of one's own. Borrowed.
  cairo_t* context() const { return context_.get(); }

  void fillAll(Colour colour);
  void fill(const Rect& rect, double radius, Colour colour);
  /// The fill changes evenly from the top to the bottom.
  void fill(const Rect& rect, double radius, Colour top, Colour bottom);
  /// The line lies inside the rectangle.
  void stroke(const Rect& rect, double radius, double width, Colour colour);
  void circle(Point centre, double radius, Colour colour);
  void line(Point from, Point to, double width, Colour colour);

  /// The width of a text in one line, in points.
  double textWidth(std::string_view text, const TextStyle& style);

  /// Draws a text within the frame and cuts what does not fit. Ill-formed bytes are repaired.
  void text(const Rect& frame, std::string_view text, const TextStyle& style);
  void editedText(const Rect& frame, std::string_view text, const TextStyle& style,
                  const TextEditing& editing);

  /// Restricts what is drawn from now on to the rounded rectangle. `Clip` undoes it.
  void clipTo(const Rect& rect, double radius);

  /// What has been drawn until now. Borrowed.
  PixelRows pixels() const;

 private:
  struct Free {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
  };

  void path(const Rect& rect, double radius);
  void paint(Colour colour);
  std::unique_ptr<PangoLayout, Free> layout(const std::string& text, const TextStyle& style,
                                            double width);

  std::unique_ptr<cairo_surface_t, Free> surface_;
  std::unique_ptr<cairo_t, Free> context_;
};

/// While it lives, nothing outside the rounded rectangle is drawn.
class Clip {
 public:
  Clip(Canvas& canvas, const Rect& rect, double radius);
  ~Clip();
  Clip(const Clip&) = delete;
  Clip& operator=(const Clip&) = delete;

 private:
  Canvas& canvas_;
};

/// Draws as `draw` does, but on no pixel that lies in the rectangle whole: for what is soon covered
/// there. `draw` is called several times, each for another part of the picture.
void drawAround(Canvas& canvas, const Rect& rect, const std::function<void()>& draw);

/// Blurs what has been drawn within the rectangle, as frosted glass over it would. `reach` is how
/// far a point spreads, in points. The same picture gives the same pixels on every machine.
void blur(Canvas& canvas, const Rect& rect, double reach);

}  // namespace simulator
