// Chooses a mode of the main display that is at least so many points wide and high, the smallest
// that is, until the user logs out: display_mode WIDTH HEIGHT. For hosted Macs. Succeeds when the
// display is large enough in the end.
#include <CoreGraphics/CoreGraphics.h>

#include <cstdio>
#include <cstdlib>

namespace {

bool fits(CGDisplayModeRef mode, std::size_t width, std::size_t height) {
  return CGDisplayModeGetWidth(mode) >= width && CGDisplayModeGetHeight(mode) >= height;
}

std::size_t area(CGDisplayModeRef mode) {
  return CGDisplayModeGetWidth(mode) * CGDisplayModeGetHeight(mode);
}

/// The smallest that fits; null when none does. Borrowed from the list.
CGDisplayModeRef smallestFitting(CFArrayRef modes, std::size_t width, std::size_t height) {
  CGDisplayModeRef best = nullptr;
  for (CFIndex index = 0; index < CFArrayGetCount(modes); ++index) {
    const auto mode =
        static_cast<CGDisplayModeRef>(const_cast<void*>(CFArrayGetValueAtIndex(modes, index)));
    std::printf("%zu by %zu points, %zu pixels wide\n", CGDisplayModeGetWidth(mode),
                CGDisplayModeGetHeight(mode), CGDisplayModeGetPixelWidth(mode));
    if (fits(mode, width, height) && (best == nullptr || area(mode) < area(best))) best = mode;
  }
  return best;
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) return 2;
  const auto width = static_cast<std::size_t>(std::atoi(words[1]));
  const auto height = static_cast<std::size_t>(std::atoi(words[2]));
  const CGDirectDisplayID display = CGMainDisplayID();
  if (fits(CGDisplayCopyDisplayMode(display), width, height)) return 0;
  CFArrayRef modes = CGDisplayCopyAllDisplayModes(display, nullptr);
  if (modes == nullptr) return 1;
  CGDisplayModeRef mode = smallestFitting(modes, width, height);
  if (mode == nullptr || CGDisplaySetDisplayMode(display, mode, nullptr) != 0) return 1;
  return fits(CGDisplayCopyDisplayMode(display), width, height) ? 0 : 1;
}
