#include "simulator/drawing/canvas.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "base/utf8.h"

namespace simulator {

namespace {

// The first has the plainer Latin letters, the second the symbols the first lacks.
constexpr const char* fontFamilies = "Noto Sans CJK SC, DejaVu Sans";
constexpr double unitsPerPoint = PANGO_SCALE;
constexpr double caretWidth = 1.5;

/// Texts with nothing that Pango refuses or shows as a box.
std::string printable(std::string_view bytes) {
  std::string text = driver::repairedUtf8(bytes);
  std::replace_if(
      text.begin(), text.end(),
      [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t'; }, ' ');
  return text;
}

/// Where the UTF-16 unit begins in well-formed UTF-8.
int byteAt(const std::string& text, std::int64_t unit) {
  std::size_t byte = 0;
  while (byte < text.size() && unit > 0) {
    const auto lead = static_cast<unsigned char>(text[byte]);
    byte += lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unit -= lead < 0xF0 ? 1 : 2;
  }
  return static_cast<int>(std::min(byte, text.size()));
}

/// Shapes that do not depend on the screen that looks at them.
void setPlainFontOptions(PangoLayout* layout) {
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  PangoContext* const context = pango_layout_get_context(layout);
  pango_cairo_context_set_font_options(context, options);
  // Small pictures would have their letters pushed together.
  pango_context_set_round_glyph_positions(context, FALSE);
  cairo_font_options_destroy(options);
}

void setFont(PangoLayout* layout, const TextStyle& style) {
  PangoFontDescription* font = pango_font_description_new();
  pango_font_description_set_family_static(font, fontFamilies);
  pango_font_description_set_absolute_size(font, style.size * unitsPerPoint);
  pango_font_description_set_weight(font, style.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
}

void setUnderline(PangoLayout* layout) {
  PangoAttrList* attributes = pango_attr_list_new();
  pango_attr_list_insert(attributes, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
  pango_layout_set_attributes(layout, attributes);
  pango_attr_list_unref(attributes);
}

double heightOf(PangoLayout* layout) {
  int height = 0;
  pango_layout_get_size(layout, nullptr, &height);
  return height / unitsPerPoint;
}

void setUnbounded(PangoLayout* layout) {
  pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_NONE);
  pango_layout_set_width(layout, -1);
}

void setHighlight(PangoLayout* layout, int start, int end, Colour colour) {
  const auto part = [](double level) { return static_cast<guint16>(level * 0xFFFF); };
  PangoAttribute* background =
      pango_attr_background_new(part(colour.red), part(colour.green), part(colour.blue));
  background->start_index = static_cast<guint>(start);
  background->end_index = static_cast<guint>(end);
  PangoAttrList* attributes = pango_attr_list_new();
  pango_attr_list_insert(attributes, background);
  pango_layout_set_attributes(layout, attributes);
  pango_attr_list_unref(attributes);
}

/// The caret before the byte, in points relative to the text.
Rect caretAt(PangoLayout* layout, int byte) {
  PangoRectangle caret;
  pango_layout_get_cursor_pos(layout, byte, &caret, nullptr);
  return {caret.x / unitsPerPoint, caret.y / unitsPerPoint, 1, caret.height / unitsPerPoint};
}

/// Where the text begins, so that the caret, or what has been scrolled to, is in the frame.
Point originOf(PangoLayout* layout, const Rect& frame, const TextStyle& style,
               const TextEditing& editing, const Rect& caret) {
  const double height = heightOf(layout);
  if (!style.wrapped) {
    const double beyond = editing.caret ? caret.x + caretWidth - frame.width : 0;
    return {frame.x - std::max(beyond, 0.0), frame.y + (frame.height - height) / 2};
  }
  const double overflow = std::max(height - frame.height, 0.0);
  const double beyond = editing.caret ? caret.y + caret.height - frame.height : 0;
  const double wanted = editing.scroll == 0 ? beyond : editing.scroll;
  return {frame.x, frame.y - std::clamp(wanted, 0.0, overflow)};
}

/// Three boxes after one another are as good as a bell curve.
constexpr int boxes = 3;
constexpr std::ptrdiff_t channels = 4;

/// A rectangle of pixels.
struct Area {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

/// A row or a column of pixels.
struct Line {
  unsigned char* first = nullptr;
  std::ptrdiff_t step = 0;  // bytes from one pixel to the next
  int length = 0;
};

/// Each channel of each pixel becomes the mean of those around it; beyond the ends the outermost
/// goes on.
void average(const Line& line, int radius, std::vector<unsigned char>& copy) {
  const auto length = static_cast<std::size_t>(line.length);
  const int width = 2 * radius + 1;
  for (int channel = 0; channel < channels; ++channel) {
    unsigned char* const first = line.first + channel;
    for (std::size_t i = 0; i < length; ++i) {
      copy[i] = first[static_cast<std::ptrdiff_t>(i) * line.step];
    }
    const auto at = [&](int i) {
      return static_cast<int>(copy[static_cast<std::size_t>(std::clamp(i, 0, line.length - 1))]);
    };
    int sum = 0;
    for (int i = -radius; i <= radius; ++i) sum += at(i);
    for (int i = 0; i < line.length; ++i) {
      first[i * line.step] = static_cast<unsigned char>((sum + radius) / width);
      sum += at(i + radius + 1) - at(i - radius);
    }
  }
}

/// The rectangle in pixels, which may lie between two and beyond the picture.
Rect inPixels(Canvas& canvas, const Rect& rect) {
  double left = rect.x;
  double top = rect.y;
  double right = rect.x + rect.width;
  double bottom = rect.y + rect.height;
  cairo_user_to_device(canvas.context(), &left, &top);
  cairo_user_to_device(canvas.context(), &right, &bottom);
  return {left, top, right - left, bottom - top};
}

/// All of the picture.
Area wholeOf(Canvas& canvas) {
  cairo_surface_t* const surface = cairo_get_target(canvas.context());
  return {0, 0, cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface)};
}

int within(double value, int most) {
  return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(most)));
}

/// The pixels between the edges of the rectangle, which are rounded so.
Area pixelsBetween(Canvas& canvas, const Rect& rect, double (*roundedStart)(double),
                   double (*roundedEnd)(double)) {
  const Rect place = inPixels(canvas, rect);
  const Area whole = wholeOf(canvas);
  return {within(roundedStart(place.x), whole.right), within(roundedStart(place.y), whole.bottom),
          within(roundedEnd(place.x + place.width), whole.right),
          within(roundedEnd(place.y + place.height), whole.bottom)};
}

/// The pixels of which the rectangle covers more than half.
Area pixelsOf(Canvas& canvas, const Rect& rect) {
  return pixelsBetween(canvas, rect, std::round, std::round);
}

/// The pixels that lie in the rectangle with all that they are.
Area pixelsInside(Canvas& canvas, const Rect& rect) {
  return pixelsBetween(canvas, rect, std::ceil, std::floor);
}

bool isEmpty(const Area& area) { return area.right <= area.left || area.bottom <= area.top; }

void clipTo(Canvas& canvas, const Area& area) {
  cairo_matrix_t points;
  cairo_get_matrix(canvas.context(), &points);
  cairo_identity_matrix(canvas.context());
  cairo_rectangle(canvas.context(), area.left, area.top, area.right - area.left,
                  area.bottom - area.top);
  cairo_clip(canvas.context());
  cairo_set_matrix(canvas.context(), &points);
}

}  // namespace

Canvas::Canvas(std::uint64_t width, std::uint64_t height, const Rect& source)
    : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width),
                                          static_cast<int>(height))),
      context_(cairo_create(surface_.get())) {
  cairo_scale(context(), static_cast<double>(width) / source.width,
              static_cast<double>(height) / source.height);
  cairo_translate(context(), -source.x, -source.y);
}

void Canvas::path(const Rect& rect, double radius) {
  const double r = std::min({radius, rect.width / 2, rect.height / 2});
  if (r <= 0) {
    cairo_rectangle(context(), rect.x, rect.y, rect.width, rect.height);
    return;
  }
  constexpr double quarter = std::numbers::pi / 2;
  const double right = rect.x + rect.width - r;
  const double bottom = rect.y + rect.height - r;
  cairo_new_sub_path(context());
  cairo_arc(context(), right, rect.y + r, r, -quarter, 0);
  cairo_arc(context(), right, bottom, r, 0, quarter);
  cairo_arc(context(), rect.x + r, bottom, r, quarter, 2 * quarter);
  cairo_arc(context(), rect.x + r, rect.y + r, r, 2 * quarter, 3 * quarter);
  cairo_close_path(context());
}

void Canvas::paint(Colour colour) {
  cairo_set_source_rgba(context(), colour.red, colour.green, colour.blue, colour.alpha);
}

void Canvas::fillAll(Colour colour) {
  paint(colour);
  cairo_paint(context());
}

void Canvas::fill(const Rect& rect, double radius, Colour colour) {
  path(rect, radius);
  paint(colour);
  cairo_fill(context());
}

void Canvas::fill(const Rect& rect, double radius, Colour top, Colour bottom) {
  cairo_pattern_t* pattern = cairo_pattern_create_linear(0, rect.y, 0, rect.y + rect.height);
  cairo_pattern_add_color_stop_rgba(pattern, 0, top.red, top.green, top.blue, top.alpha);
  cairo_pattern_add_color_stop_rgba(pattern, 1, bottom.red, bottom.green, bottom.blue,
                                    bottom.alpha);
  path(rect, radius);
  cairo_set_source(context(), pattern);
  cairo_fill(context());
  cairo_pattern_destroy(pattern);
}

void Canvas::stroke(const Rect& rect, double radius, double width, Colour colour) {
  const double inset = width / 2;
  path({rect.x + inset, rect.y + inset, rect.width - width, rect.height - width}, radius - inset);
  paint(colour);
  cairo_set_line_width(context(), width);
  cairo_stroke(context());
}

void Canvas::circle(Point centre, double radius, Colour colour) {
  fill({centre.x - radius, centre.y - radius, 2 * radius, 2 * radius}, radius, colour);
}

void Canvas::line(Point from, Point to, double width, Colour colour) {
  cairo_move_to(context(), from.x, from.y);
  cairo_line_to(context(), to.x, to.y);
  paint(colour);
  cairo_set_line_width(context(), width);
  cairo_stroke(context());
}

std::unique_ptr<PangoLayout, Canvas::Free> Canvas::layout(const std::string& text,
                                                          const TextStyle& style, double width) {
  std::unique_ptr<PangoLayout, Free> layout(pango_cairo_create_layout(context()));
  setPlainFontOptions(layout.get());
  setFont(layout.get(), style);
  if (style.underlined) setUnderline(layout.get());
  pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
  pango_layout_set_width(layout.get(), static_cast<int>(width * unitsPerPoint));
  pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
  pango_layout_set_single_paragraph_mode(layout.get(), style.wrapped ? FALSE : TRUE);
  if (!style.wrapped) pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
  if (style.align == TextStyle::Align::centre) {
    pango_layout_set_alignment(layout.get(), PANGO_ALIGN_CENTER);
  }
  return layout;
}

double Canvas::textWidth(std::string_view text, const TextStyle& style) {
  const auto line = layout(printable(text), style, 1);
  setUnbounded(line.get());
  int width = 0;
  pango_layout_get_size(line.get(), &width, nullptr);
  return width / unitsPerPoint;
}

void Canvas::text(const Rect& frame, std::string_view text, const TextStyle& style) {
  editedText(frame, text, style, {});
}

void Canvas::editedText(const Rect& frame, std::string_view text, const TextStyle& style,
                        const TextEditing& editing) {
  const bool drawsNothing = text.empty() && !editing.caret;
  if (drawsNothing || frame.width < 1 || frame.height < 1) return;
  const std::string shown = printable(text);
  const auto lines = layout(shown, style, frame.width);
  if (editing.caret && !style.wrapped) setUnbounded(lines.get());
  const int start = byteAt(shown, editing.selection.location);
  const int end = byteAt(shown, editing.selection.location + editing.selection.length);
  if (end > start) setHighlight(lines.get(), start, end, editing.selectionColour);
  const Rect caret = caretAt(lines.get(), end);
  const Point origin = originOf(lines.get(), frame, style, editing, caret);
  const Clip clip(*this, frame, 0);
  cairo_move_to(context(), origin.x, origin.y);
  paint(style.colour);
  pango_cairo_show_layout(context(), lines.get());
  if (editing.caret && end == start) {
    fill({origin.x + caret.x, origin.y + caret.y + 1, caretWidth, caret.height - 2}, 0,
         Colour::grey(0.1));
  }
}

void Canvas::clipTo(const Rect& rect, double radius) {
  path(rect, radius);
  cairo_clip(context());
}

PixelRows Canvas::pixels() const {
  cairo_surface_t* const surface = surface_.get();
  cairo_surface_flush(surface);
  return {cairo_image_surface_get_data(surface), cairo_image_surface_get_stride(surface),
          static_cast<std::uint32_t>(cairo_image_surface_get_width(surface)),
          static_cast<std::uint32_t>(cairo_image_surface_get_height(surface))};
}

Clip::Clip(Canvas& canvas, const Rect& rect, double radius) : canvas_(canvas) {
  cairo_save(canvas_.context());
  canvas_.clipTo(rect, radius);
}

Clip::~Clip() { cairo_restore(canvas_.context()); }

void drawAround(Canvas& canvas, const Rect& rect, const std::function<void()>& draw) {
  const Area whole = wholeOf(canvas);
  const Area spared = pixelsInside(canvas, rect);
  if (isEmpty(spared)) return draw();
  // Cairo is quick where a clip is a single rectangle.
  for (const Area& side :
       {Area{0, 0, whole.right, spared.top}, Area{0, spared.bottom, whole.right, whole.bottom},
        Area{0, spared.top, spared.left, spared.bottom},
        Area{spared.right, spared.top, whole.right, spared.bottom}}) {
    if (isEmpty(side)) continue;
    cairo_save(canvas.context());
    clipTo(canvas, side);
    draw();
    cairo_restore(canvas.context());
  }
}

void blur(Canvas& canvas, const Rect& rect, double reach) {
  const Area area = pixelsOf(canvas, rect);
  double reachX = reach / boxes;
  double reachY = reach / boxes;
  cairo_user_to_device_distance(canvas.context(), &reachX, &reachY);
  const int radius = std::max(static_cast<int>(std::lround(reachX)), 1);
  const int width = area.right - area.left;
  const int height = area.bottom - area.top;
  if (width < 1 || height < 1) return;
  cairo_surface_t* const surface = cairo_get_target(canvas.context());
  cairo_surface_flush(surface);
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface);
  unsigned char* const start =
      cairo_image_surface_get_data(surface) + area.top * stride + area.left * channels;
  std::vector<unsigned char> copy(static_cast<std::size_t>(std::max(width, height)));
  for (int box = 0; box < boxes; ++box) {
    for (int y = 0; y < height; ++y) average({start + y * stride, channels, width}, radius, copy);
    for (int x = 0; x < width; ++x) average({start + x * channels, stride, height}, radius, copy);
  }
  cairo_surface_mark_dirty(surface);
}

}  // namespace simulator
