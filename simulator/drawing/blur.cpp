#include "simulator/drawing/blur.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace simulator {

namespace {

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

Area pixelsOf(Canvas& canvas, const Rect& rect) {
  double left = rect.x;
  double top = rect.y;
  double right = rect.x + rect.width;
  double bottom = rect.y + rect.height;
  cairo_user_to_device(canvas.context(), &left, &top);
  cairo_user_to_device(canvas.context(), &right, &bottom);
  cairo_surface_t* const surface = cairo_get_target(canvas.context());
  const auto within = [](double value, int most) {
    return static_cast<int>(std::clamp(std::round(value), 0.0, static_cast<double>(most)));
  };
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  return {within(left, width), within(top, height), within(right, width), within(bottom, height)};
}

}  // namespace

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
