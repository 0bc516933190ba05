#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/image.h"
#include "platform/types.h"
#include "platform/window_server.h"

/// What can be captured of the screen, and screenshots. Functions throw PlatformError when the
/// system refuses, or does not answer in time.
namespace share {

struct Owner {
  platform::Pid pid = 0;
  std::string bundleIdentifier;  // may be empty
  std::string name;              // may be empty
};

struct Window {
  platform::WindowNumber number = 0;
  platform::Rect frame;
  std::optional<std::string> title;
  std::int64_t layer = 0;
  std::optional<Owner> owner;
};

struct Display {
  windowserver::DisplayId id = 0;
  platform::Rect frame;
};

/// What can be shared, in the system's order. `native` is the platform's own object, which filters
/// are made from.
struct Content {
  std::vector<Window> windows;
  std::vector<Display> displays;
  std::shared_ptr<void> native;
};

enum class DesktopWindows { included, excluded };

/// One window by itself, independent of where it lies.
struct WindowFilter {
  platform::WindowNumber window = 0;
};

/// A display with exactly these windows drawn.
struct IncludingFilter {
  windowserver::DisplayId display = 0;
  std::vector<platform::WindowNumber> windows;
};

/// A whole display.
struct DisplayFilter {
  windowserver::DisplayId display = 0;
};

/// Names displays and windows of the content it is used with.
using Filter = std::variant<WindowFilter, IncludingFilter, DisplayFilter>;

/// How a screenshot is made. The cursor is never shown.
struct Configuration {
  std::uint64_t width = 0;   // pixels
  std::uint64_t height = 0;  // pixels
  /// The part to capture, in points relative to the display's origin; all of it when absent.
  std::optional<platform::Rect> source;
  /// The opaque grey level (0 to 1) behind the windows; the system's default when absent.
  std::optional<double> backgroundGrey;
};

/// The windows on screen and the displays.
Content content(DesktopWindows desktopWindows);

/// One screenshot. A filter that names what `content` does not hold is a PlatformError.
image::Image screenshot(const Content& content, const Filter& filter,
                        const Configuration& configuration);

}  // namespace share
