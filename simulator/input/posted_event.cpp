#include "simulator/input/posted_event.h"

namespace simulator {

using platform::EventImage;
using quartz::EventType;
using quartz::Field;

namespace {

/// On a real Mac the public setter takes a write of these and drops it without a word. So does
/// ours: a driver that forgot the private one would seem to work otherwise.
bool isPrivateField(Field field) {
  switch (field) {
    case Field::targetProcess:
    case Field::targetWindow:
    case Field::clickGroup:
    case Field::windowUnderPointer:
    case Field::windowThatCanHandle:
      return true;
    default:
      return false;
  }
}

}  // namespace

EventType typeOf(const EventImage& event) { return static_cast<EventType>(event.type); }

std::int64_t fieldOf(const EventImage& event, Field field) {
  const auto number = static_cast<std::uint32_t>(field);
  std::int64_t value = 0;
  for (const auto& entry : event.publicFields) {
    if (entry.field == number && !isPrivateField(field)) value = entry.value;
  }
  for (const auto& entry : event.privateFields) {
    if (entry.field == number) value = entry.value;
  }
  return value;
}

bool isPress(const EventImage& event) {
  return typeOf(event) == EventType::leftMouseDown || typeOf(event) == EventType::rightMouseDown;
}

bool isKeyEvent(const EventImage& event) {
  return typeOf(event) == EventType::keyDown || typeOf(event) == EventType::keyUp;
}

}  // namespace simulator
