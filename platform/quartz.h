#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/types.h"

/// Quartz events. Events are local until they are posted; only creating and posting asks the
/// system.
namespace quartz {

/// An event source; an event. Copies share it.
using Source = platform::Handle<struct SourceTag>;
using Event = platform::Handle<struct EventTag>;

enum class EventType : std::uint32_t {
  leftMouseDown = 1,
  leftMouseUp = 2,
  rightMouseDown = 3,
  rightMouseUp = 4,
  mouseMoved = 5,
  leftMouseDragged = 6,
  rightMouseDragged = 7,
  keyDown = 10,
  keyUp = 11,
  flagsChanged = 12,
  scrollWheel = 22,
  otherMouseDown = 25,
};

/// Modifier keys as they are in an event's flags.
enum class Modifier : std::uint64_t {
  shift = 0x20000,
  control = 0x40000,
  option = 0x80000,
  command = 0x100000,
};

enum class MouseButton : std::uint32_t { left = 0, right = 1 };

/// Event fields by the platform's numbers.
enum class Field : std::uint32_t {
  mouseEventNumber = 0,
  clickState = 1,
  buttonNumber = 3,
  deltaX = 4,
  deltaY = 5,
  mouseSubtype = 7,
  keyCode = 9,
  targetProcess = 40,
  sourceUserData = 42,
  targetWindow = 51,
  clickGroup = 58,
  windowUnderPointer = 91,
  windowThatCanHandle = 92,
};

/// A source of the HID system state. None when the system gives none.
std::optional<Source> createSource();

/// An empty event, which carries the pointer's present location.
std::optional<Event> createEvent();

/// A mouse event at a global point. `source` may be null. None when it cannot be created.
std::optional<Event> createMouseEvent(const Source* source, EventType type, platform::Point point,
                                      MouseButton button);

/// A scroll event without a source, in lines: wheel 1 is `vertical`, wheel 2 is `horizontal`.
std::optional<Event> createScrollEvent(std::int32_t vertical, std::int32_t horizontal);

/// A key going down or up, without a source. None when it cannot be created.
std::optional<Event> createKeyboardEvent(std::uint16_t keyCode, bool down);

/// The location in global points. Local.
platform::Point location(const Event& event);
void setLocation(const Event& event, platform::Point point);

/// Sets all modifier flags: those of the user's keyboard that are not in `flags` are cleared.
/// Local.
void setFlags(const Event& event, std::uint64_t flags);

/// The text that a key event types, whatever its key. Local.
void setText(const Event& event, std::u16string_view text);

/// Sets an integer field with the public setter. Local.
void setField(const Event& event, Field field, std::int64_t value);

/// Posts the event to one process by the public route. The system reports nothing back.
void postToPid(platform::Pid pid, const Event& event);

/// Seconds since the last event of this type came from the user's devices. May be infinite.
double secondsSinceLast(EventType type);

}  // namespace quartz
