#include "support/taps.h"

#include "support/system.h"

namespace probe {

namespace {

CGEventRef keep(CGEventTapProxy, CGEventType type, CGEventRef event, void* seen) {
  constexpr std::uint32_t firstNotice = kCGEventTapDisabledByTimeout;
  SeenEvent each{static_cast<std::uint32_t>(type), 0, 0};
  if (each.type < firstNotice) {
    each.tag = CGEventGetIntegerValueField(event, kCGEventSourceUserData);
    each.keyCode = CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode);
  }
  static_cast<std::vector<SeenEvent>*>(seen)->push_back(each);
  return event;
}

}  // namespace

Tap::Tap(CGEventTapOptions options, CGEventMask mask)
    : port_(CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, options, mask, keep,
                             &seen_)) {
  if (port_ == nullptr) return;
  CFRunLoopSourceRef source = CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port_, 0);
  CFRunLoopAddSource(CFRunLoopGetMain(), source, kCFRunLoopCommonModes);
  CFRelease(source);
}

Tap::~Tap() {
  if (port_ == nullptr) return;
  CFMachPortInvalidate(port_);
  CFRelease(port_);
}

std::vector<SeenEvent> Tap::eventsWithin(double seconds) {
  seen_.clear();
  runLoop(seconds);
  return seen_;
}

void postIdleKey(std::int64_t tag) {
  for (const bool down : {true, false}) {
    CGEventRef event = CGEventCreateKeyboardEvent(nullptr, idleKey, down);
    CGEventSetFlags(event, 0);
    CGEventSetIntegerValueField(event, kCGEventSourceUserData, tag);
    CGEventPost(kCGSessionEventTap, event);
    CFRelease(event);
  }
}

}  // namespace probe
