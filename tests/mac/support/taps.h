#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <vector>

namespace probe {

/// What a tap was told of.
struct SeenEvent {
  std::uint32_t type = 0;
  std::int64_t tag = 0;
  std::int64_t keyCode = 0;
};

/// A tap at the session that passes everything on, served by the current run loop while it lives.
class Tap {
 public:
  Tap(CGEventTapOptions options, CGEventMask mask);
  ~Tap();
  Tap(const Tap&) = delete;
  Tap& operator=(const Tap&) = delete;

  bool isMade() const { return port_ != nullptr; }
  bool isEnabled() const { return isMade() && CGEventTapIsEnabled(port_); }

  /// What it is told within so long.
  std::vector<SeenEvent> eventsWithin(double seconds);

 private:
  CFMachPortRef port_ = nullptr;
  std::vector<SeenEvent> seen_;
};

constexpr CGEventMask keyMask = CGEventMaskBit(kCGEventKeyDown) | CGEventMaskBit(kCGEventKeyUp);

/// A key that does nothing, F20.
constexpr CGKeyCode idleKey = 0x5A;

/// Posts the press and the release of that key into the session, tagged.
void postIdleKey(std::int64_t tag);

}  // namespace probe
