#include "platform/quartz.h"

#include <CoreGraphics/CoreGraphics.h>

#include "platform/macos/owned.h"
#include "platform/macos/same_numbers.h"
#include "platform/macos/window_server_connection.h"

namespace quartz {

namespace {

using macos::Owned;
using macos::sameNumber;

static_assert(sameNumber(EventType::leftMouseDown, kCGEventLeftMouseDown));
static_assert(sameNumber(EventType::leftMouseUp, kCGEventLeftMouseUp));
static_assert(sameNumber(EventType::rightMouseDown, kCGEventRightMouseDown));
static_assert(sameNumber(EventType::rightMouseUp, kCGEventRightMouseUp));
static_assert(sameNumber(EventType::mouseMoved, kCGEventMouseMoved));
static_assert(sameNumber(EventType::scrollWheel, kCGEventScrollWheel));
static_assert(sameNumber(MouseButton::left, kCGMouseButtonLeft));
static_assert(sameNumber(MouseButton::right, kCGMouseButtonRight));
static_assert(sameNumber(Modifier::shift, kCGEventFlagMaskShift));
static_assert(sameNumber(Modifier::control, kCGEventFlagMaskControl));
static_assert(sameNumber(Modifier::option, kCGEventFlagMaskAlternate));
static_assert(sameNumber(Modifier::command, kCGEventFlagMaskCommand));
// Two fields more have no name of the platform's.
static_assert(sameNumber(Field::mouseEventNumber, kCGMouseEventNumber));
static_assert(sameNumber(Field::clickState, kCGMouseEventClickState));
static_assert(sameNumber(Field::buttonNumber, kCGMouseEventButtonNumber));
static_assert(sameNumber(Field::mouseSubtype, kCGMouseEventSubtype));
static_assert(sameNumber(Field::targetProcess, kCGEventTargetUnixProcessID));
static_assert(sameNumber(Field::sourceUserData, kCGEventSourceUserData));
static_assert(sameNumber(Field::windowUnderPointer, kCGMouseEventWindowUnderMousePointer));
static_assert(sameNumber(Field::windowThatCanHandle,
                         kCGMouseEventWindowUnderMousePointerThatCanHandleThisEvent));

constexpr std::uint32_t scrollWheels = 2;

CGEventRef native(const Event& event) { return static_cast<CGEventRef>(event.get()); }

CGEventSourceRef native(const Source* source) {
  return source == nullptr ? nullptr : static_cast<CGEventSourceRef>(source->get());
}

std::optional<Event> handle(Owned<CGEventRef> event) {
  if (!event) return std::nullopt;
  return Event(macos::shared(std::move(event)));
}

}  // namespace

std::optional<Source> createSource() {
  macos::connectToWindowServer();
  Owned<CGEventSourceRef> source(CGEventSourceCreate(kCGEventSourceStateHIDSystemState));
  if (!source) return std::nullopt;
  return Source(macos::shared(std::move(source)));
}

std::optional<Event> createEvent() {
  macos::connectToWindowServer();
  return handle(Owned(CGEventCreate(nullptr)));
}

std::optional<Event> createMouseEvent(const Source* source, EventType type, platform::Point point,
                                      MouseButton button) {
  macos::connectToWindowServer();
  return handle(
      Owned(CGEventCreateMouseEvent(native(source), static_cast<CGEventType>(type),
                                    {point.x, point.y}, static_cast<CGMouseButton>(button))));
}

std::optional<Event> createScrollEvent(std::int32_t vertical, std::int32_t horizontal) {
  macos::connectToWindowServer();
  return handle(Owned(CGEventCreateScrollWheelEvent2(nullptr, kCGScrollEventUnitLine, scrollWheels,
                                                     vertical, horizontal, 0)));
}

std::optional<Event> createKeyboardEvent(std::uint16_t keyCode, bool down) {
  macos::connectToWindowServer();
  return handle(Owned(CGEventCreateKeyboardEvent(nullptr, keyCode, down)));
}

platform::Point location(const Event& event) {
  const CGPoint point = CGEventGetLocation(native(event));
  return {point.x, point.y};
}

void setLocation(const Event& event, platform::Point point) {
  CGEventSetLocation(native(event), {point.x, point.y});
}

void setFlags(const Event& event, std::uint64_t flags) { CGEventSetFlags(native(event), flags); }

void setText(const Event& event, std::u16string_view text) {
  CGEventKeyboardSetUnicodeString(native(event), text.size(),
                                  reinterpret_cast<const UniChar*>(text.data()));
}

void setField(const Event& event, Field field, std::int64_t value) {
  CGEventSetIntegerValueField(native(event), static_cast<CGEventField>(field), value);
}

void postToPid(platform::Pid pid, const Event& event) { CGEventPostToPid(pid, native(event)); }

double secondsSinceLast(EventType type) {
  macos::connectToWindowServer();
  return CGEventSourceSecondsSinceLastEventType(kCGEventSourceStateHIDSystemState,
                                                static_cast<CGEventType>(type));
}

}  // namespace quartz
