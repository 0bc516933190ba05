#include "platform/window_server.h"

#include <CoreGraphics/CoreGraphics.h>

#include "platform/macos/core_foundation.h"
#include "platform/macos/same_numbers.h"
#include "platform/macos/window_server_connection.h"

namespace windowserver {

namespace {

using macos::Owned;
using macos::sameNumber;

static_assert(sameNumber(Windows::onScreen, kCGWindowListOptionOnScreenOnly));
static_assert(sameNumber(Windows::onScreenWithoutDesktop,
                         kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements));
static_assert(sameNumber(Windows::allWithoutDesktop, kCGWindowListExcludeDesktopElements));

CFTypeRef entry(CFDictionaryRef dictionary, CFStringRef key) {
  return dictionary == nullptr ? nullptr : CFDictionaryGetValue(dictionary, key);
}

CFDictionaryRef dictionary(CFTypeRef object) {
  return macos::cast<CFDictionaryRef>(object, CFDictionaryGetTypeID());
}

Window window(CFDictionaryRef description) {
  const CFDictionaryRef bounds = dictionary(entry(description, kCGWindowBounds));
  Window window;
  window.number = macos::wholeNumber(entry(description, kCGWindowNumber));
  window.ownerPid = macos::wholeNumber(entry(description, kCGWindowOwnerPID));
  window.layer = macos::wholeNumber(entry(description, kCGWindowLayer));
  window.name = macos::text(entry(description, kCGWindowName));
  window.x = macos::real(entry(bounds, CFSTR("X")));
  window.y = macos::real(entry(bounds, CFSTR("Y")));
  window.width = macos::real(entry(bounds, CFSTR("Width")));
  window.height = macos::real(entry(bounds, CFSTR("Height")));
  return window;
}

std::optional<std::vector<Window>> list(CGWindowListOption option, CGWindowID relativeTo) {
  macos::connectToWindowServer();
  const Owned<CFArrayRef> descriptions(CGWindowListCopyWindowInfo(option, relativeTo));
  if (!descriptions) return std::nullopt;
  std::vector<Window> windows;
  for (CFIndex i = 0; i < CFArrayGetCount(descriptions.get()); ++i) {
    windows.push_back(window(dictionary(CFArrayGetValueAtIndex(descriptions.get(), i))));
  }
  return windows;
}

}  // namespace

std::optional<std::vector<Window>> windows(Windows which) {
  return list(static_cast<CGWindowListOption>(which), kCGNullWindowID);
}

std::optional<std::vector<Window>> description(platform::WindowNumber number) {
  return list(kCGWindowListOptionIncludingWindow, number);
}

std::optional<Session> session() {
  macos::connectToWindowServer();
  const Owned<CFDictionaryRef> session(CGSessionCopyCurrentDictionary());
  if (!session) return std::nullopt;
  return Session{macos::boolean(entry(session.get(), CFSTR("CGSSessionScreenIsLocked"))),
                 macos::boolean(entry(session.get(), CFSTR("kCGSSessionOnConsoleKey")))};
}

std::optional<DisplayMode> displayMode(DisplayId display) {
  macos::connectToWindowServer();
  const Owned<CGDisplayModeRef> mode(CGDisplayCopyDisplayMode(display));
  if (!mode) return std::nullopt;
  return DisplayMode{CGDisplayModeGetWidth(mode.get()), CGDisplayModeGetPixelWidth(mode.get())};
}

std::int64_t shieldingLevel() {
  macos::connectToWindowServer();
  return CGShieldingWindowLevel();
}

bool captureAccess() {
  macos::connectToWindowServer();
  return CGPreflightScreenCaptureAccess();
}

}  // namespace windowserver
