#include "platform/macos/standins/windows.h"

#include <optional>
#include <string>

#include "platform/macos/standins/objects.h"

namespace standins {

namespace {

struct Mode {
  std::size_t width = 0;
  std::size_t pixelWidth = 0;
};

struct Server {
  CFArrayRef windows = nullptr;
  CFDictionaryRef session = nullptr;
  std::optional<Mode> mode;
  bool captureAccess = false;
  int connections = 0;
};

Server& server() {
  static Server server;
  return server;
}

struct DisplayMode : Object {
  explicit DisplayMode(const Mode& mode) : Object(Type::displayMode), mode(mode) {}
  std::string describe() const override { return "display mode"; }
  Mode mode;
};

const Mode& modeOf(CGDisplayModeRef mode) { return as<DisplayMode>(mode)->mode; }

void requireConnection() {
  if (server().connections == 0) noteMistake("no connection to the window server");
}

// One more reference for the caller; null for nothing.
template <class Reference>
Reference copied(Reference reference) {
  if (reference != nullptr) CFRetain(reference);
  return reference;
}

template <class Reference>
Reference keptOrNull(Reference reference) {
  return reference == nullptr ? nullptr : kept(reference);
}

}  // namespace

void setWindows(CFArrayRef windows) { server().windows = keptOrNull(windows); }

void setSession(CFDictionaryRef session) { server().session = keptOrNull(session); }

void setDisplayMode(std::size_t width, std::size_t pixelWidth) {
  server().mode = Mode{width, pixelWidth};
}

void removeDisplayMode() { server().mode.reset(); }

void setCaptureAccess(bool granted) { server().captureAccess = granted; }

int connections() { return server().connections; }

}  // namespace standins

using namespace standins;

const CFStringRef kCGWindowNumber = CFSTR("kCGWindowNumber");
const CFStringRef kCGWindowLayer = CFSTR("kCGWindowLayer");
const CFStringRef kCGWindowBounds = CFSTR("kCGWindowBounds");
const CFStringRef kCGWindowOwnerPID = CFSTR("kCGWindowOwnerPID");
const CFStringRef kCGWindowName = CFSTR("kCGWindowName");

CGDirectDisplayID CGMainDisplayID() {
  ++server().connections;
  return mainDisplay;
}

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow) {
  requireConnection();
  record("list " + std::to_string(option) + " " + std::to_string(relativeToWindow));
  return copied(server().windows);
}

CFDictionaryRef CGSessionCopyCurrentDictionary() {
  requireConnection();
  return copied(server().session);
}

CGDisplayModeRef CGDisplayCopyDisplayMode(CGDirectDisplayID display) {
  requireConnection();
  if (display != mainDisplay || !server().mode) return nullptr;
  return reinterpret_cast<CGDisplayModeRef>(entered(new DisplayMode(*server().mode)));
}

size_t CGDisplayModeGetWidth(CGDisplayModeRef mode) { return modeOf(mode).width; }

size_t CGDisplayModeGetPixelWidth(CGDisplayModeRef mode) { return modeOf(mode).pixelWidth; }

bool CGPreflightScreenCaptureAccess() {
  requireConnection();
  return server().captureAccess;
}
