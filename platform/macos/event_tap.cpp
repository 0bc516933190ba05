#include "platform/event_tap.h"

#include <CoreGraphics/CoreGraphics.h>

#include <forward_list>
#include <mutex>
#include <utility>

#include "platform/ax.h"
#include "platform/loop.h"
#include "platform/macos/owned.h"
#include "platform/macos/same_numbers.h"
#include "platform/macos/window_server_connection.h"

namespace tap {

namespace {

using macos::Owned;
using macos::sameNumber;
using quartz::EventType;
using quartz::Field;

static_assert(sameNumber(EventType::leftMouseDragged, kCGEventLeftMouseDragged));
static_assert(sameNumber(EventType::rightMouseDragged, kCGEventRightMouseDragged));
static_assert(sameNumber(EventType::keyDown, kCGEventKeyDown));
static_assert(sameNumber(EventType::keyUp, kCGEventKeyUp));
static_assert(sameNumber(EventType::flagsChanged, kCGEventFlagsChanged));
static_assert(sameNumber(EventType::otherMouseDown, kCGEventOtherMouseDown));
static_assert(sameNumber(Field::deltaX, kCGMouseEventDeltaX));
static_assert(sameNumber(Field::deltaY, kCGMouseEventDeltaY));
static_assert(sameNumber(Field::keyCode, kCGKeyboardEventKeycode));
static_assert(disabledByTimeout == kCGEventTapDisabledByTimeout);
static_assert(disabledByUserInput == kCGEventTapDisabledByUserInput);

constexpr CGEventMask keys = CGEventMaskBit(kCGEventKeyDown) | CGEventMaskBit(kCGEventKeyUp);

CFMachPortRef native(const Tap& tap) { return static_cast<CFMachPortRef>(tap.get()); }

// An event may be on its way while the last user of a tap gives it up, or while another thread ends
// the process. So what a tap calls is never destroyed.
void* permanent(Handler handler) {
  static auto& access = *new std::mutex;
  static auto& handlers = *new std::forward_list<Handler>;
  const std::lock_guard lock(access);
  return &handlers.emplace_front(std::move(handler));
}

bool isNotice(CGEventType type) {
  return type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput;
}

// A notice has no event that could be read.
Event copied(CGEventType type, CGEventRef event) {
  if (isNotice(type)) return {.type = type, .location = {}};
  const CGPoint location = CGEventGetLocation(event);
  return {
      .type = type,
      .location = {location.x, location.y},
      .flags = CGEventGetFlags(event),
      .sourceUserData = CGEventGetIntegerValueField(event, kCGEventSourceUserData),
      .deltaX = CGEventGetIntegerValueField(event, kCGMouseEventDeltaX),
      .deltaY = CGEventGetIntegerValueField(event, kCGMouseEventDeltaY),
      .keyCode = CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode),
      .targetProcess = CGEventGetIntegerValueField(event, kCGEventTargetUnixProcessID),
  };
}

// In a round of its own: the run loop of a thread that is no application's empties no pool.
CGEventRef serve(CGEventTapProxy, CGEventType type, CGEventRef event, void* handler) {
  Verdict verdict = Verdict::pass;
  loop::doRound([&] { verdict = (*static_cast<const Handler*>(handler))(copied(type, event)); });
  return verdict == Verdict::swallow ? nullptr : event;
}

// Without the user's permission the system makes a tap all the same, but takes the keys out of its
// mask; and it may ask the user for the permission.
bool seesKeys(Kind kind) {
  return ax::trusted() || (kind == Kind::listens && CGPreflightListenEventAccess());
}

CGEventTapPlacement placement(Place place) {
  return place == Place::head ? kCGHeadInsertEventTap : kCGTailAppendEventTap;
}

CGEventTapOptions optionsOf(Kind kind) {
  return kind == Kind::filters ? kCGEventTapOptionDefault : kCGEventTapOptionListenOnly;
}

CGEventRef letPass(CGEventTapProxy, CGEventType, CGEventRef event, void*) { return event; }

}  // namespace

std::optional<Tap> create(Place place, Kind kind, std::uint64_t mask, Handler handler) {
  macos::connectToWindowServer();
  if ((mask & keys) != 0 && !seesKeys(kind)) return std::nullopt;
  Owned<CFMachPortRef> port(CGEventTapCreate(kCGSessionEventTap, placement(place), optionsOf(kind),
                                             mask, serve, permanent(std::move(handler))));
  if (!port) return std::nullopt;
  // The system has enabled it already, but nobody serves it yet.
  CGEventTapEnable(port.get(), false);
  return Tap(macos::shared(std::move(port)));
}

void attach(const Tap& tap) {
  const Owned<CFRunLoopSourceRef> source(
      CFMachPortCreateRunLoopSource(kCFAllocatorDefault, native(tap), 0));
  // Without one, as where the port is invalid already, the tap would hear nothing and hold up all
  // that it filters: it is not to be called enabled.
  if (!source) return CFMachPortInvalidate(native(tap));
  CFRunLoopAddSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
}

void enable(const Tap& tap) { CGEventTapEnable(native(tap), true); }

// The system may call a tap enabled whose port is invalid.
bool isEnabled(const Tap& tap) {
  return CFMachPortIsValid(native(tap)) && CGEventTapIsEnabled(native(tap));
}

bool canBeMade(Kind kind, std::uint64_t mask) {
  macos::connectToWindowServer();
  if ((mask & keys) != 0 && !seesKeys(kind)) return false;
  const Owned<CFMachPortRef> port(CGEventTapCreate(kCGSessionEventTap, kCGTailAppendEventTap,
                                                   optionsOf(kind), mask, letPass, nullptr));
  if (!port) return false;
  // A tap that is only released goes on standing in the way of events.
  CFMachPortInvalidate(port.get());
  return true;
}

}  // namespace tap
