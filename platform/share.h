#pragma once

#include <cstdint>
#include <functional>
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

enum class Shown { onScreen, anywhere };

/// The windows and the displays.
Content content(DesktopWindows desktopWindows, Shown shown);

/// One screenshot. A filter that names what `content` does not hold is a PlatformError.
image::Image screenshot(const Content& content, const Filter& filter,
                        const Configuration& configuration);

/// How a stream is made. Neither cursor nor sound is shared.
struct StreamConfiguration {
  std::uint64_t width = 0;                // pixels
  std::uint64_t height = 0;               // pixels
  std::int64_t frameIntervalSeconds = 0;  // at least so long between two frames
  std::int64_t queueDepth = 0;            // frames
  std::string name;                       // what the system calls the sharing
  bool includesChildWindows = false;      // asked for from macOS 14.2 on only
};

/// A stream that runs, and the mark that the system puts on what it shares. Copies share it.
using Stream = platform::Handle<struct StreamTag>;

/// Called once when the system has stopped a stream that had started, with its description of why;
/// on a flow of the system's own, while the others go on.
using StopHandler = std::function<void(const std::string& description)>;

/// Starts to share one window; its frames come on a serial queue with this label and are thrown
/// away. A stream that starts too late to be waited for is stopped.
Stream startStream(const Content& content, const WindowFilter& filter,
                   const StreamConfiguration& configuration, const std::string& queueLabel,
                   StopHandler onStop);

void updateFilter(const Stream& stream, const Content& content, const WindowFilter& filter);
void updateConfiguration(const Stream& stream, const StreamConfiguration& configuration);

/// Stops it. Its stop handler is not called for that.
void stopStream(const Stream& stream);

}  // namespace share
