#include "platform/macos/capture_filter.h"

#include <map>
#include <mutex>

namespace macos {

namespace {

SCWindow* findWindow(SCShareableContent* content, platform::WindowNumber number) {
  for (SCWindow* window in content.windows) {
    if (window.windowID == number) return window;
  }
  throw platform::PlatformError("the window is not shareable");
}

SCDisplay* findDisplay(SCShareableContent* content, windowserver::DisplayId id) {
  for (SCDisplay* display in content.displays) {
    if (display.displayID == id) return display;
  }
  throw platform::PlatformError("the display is not shareable");
}

SCContentFilter* make(SCShareableContent* content, const share::WindowFilter& filter) {
  SCWindow* window = findWindow(content, filter.window);
  return [[SCContentFilter alloc] initWithDesktopIndependentWindow:window];
}

SCContentFilter* make(SCShareableContent* content, const share::IncludingFilter& filter) {
  NSMutableArray<SCWindow*>* windows = [NSMutableArray arrayWithCapacity:filter.windows.size()];
  for (const platform::WindowNumber number : filter.windows) {
    [windows addObject:findWindow(content, number)];
  }
  SCDisplay* display = findDisplay(content, filter.display);
  return [[SCContentFilter alloc] initWithDisplay:display includingWindows:windows];
}

SCContentFilter* make(SCShareableContent* content, const share::DisplayFilter& filter) {
  SCDisplay* display = findDisplay(content, filter.display);
  return [[SCContentFilter alloc] initWithDisplay:display excludingWindows:[NSArray array]];
}

// A configuration does not retain its background colour, and the system may use a configuration
// for longer than we see. So a colour is made once and never released. Nothing here is destroyed
// either: a thread may be at it while another one ends the process.
CGColorRef grey(double level) {
  static auto& access = *new std::mutex;
  static auto& colours = *new std::map<double, CGColorRef>;
  const std::lock_guard lock(access);
  CGColorRef& colour = colours[level];
  if (colour == nullptr) colour = CGColorCreateGenericGray(level, 1);
  return colour;
}

CGRect rectangle(const platform::Rect& rect) {
  return {{rect.x, rect.y}, {rect.width, rect.height}};
}

}  // namespace

SCShareableContent* native(const share::Content& content) {
  return (__bridge SCShareableContent*)content.native.get();
}

SCContentFilter* captureFilter(const share::Content& content, const share::Filter& filter) {
  return std::visit([&](const auto& kind) { return make(native(content), kind); }, filter);
}

SCStreamConfiguration* captureConfiguration(const share::Configuration& configuration) {
  SCStreamConfiguration* native = [[SCStreamConfiguration alloc] init];
  native.width = configuration.width;
  native.height = configuration.height;
  native.showsCursor = NO;
  if (configuration.source) native.sourceRect = rectangle(*configuration.source);
  if (configuration.backgroundGrey) native.backgroundColor = grey(*configuration.backgroundGrey);
  return native;
}

}  // namespace macos
