#include "platform/quartz.h"

#include "platform/simulated/channel.h"

namespace quartz {

using platform::EventImage;
using platform::Function;
using simulated::ask;
using simulated::makeHandle;
using simulated::objectOf;

namespace {

/// Fields are set here and travel with the post, as on a Mac, where an event is local until then.
/// The simulated Mac gives each new event its identity, or nothing when it cannot be created.
std::optional<Event> makeEvent(const driver::Datum& identity, EventImage image) {
  if (identity.isNothing()) return std::nullopt;
  image.identity = driver::unpack<std::int64_t>(identity);
  return makeHandle<Event>(std::move(image));
}

}  // namespace

std::optional<Source> createSource() {
  const auto identity = ask(Function::createSource);
  if (identity.isNothing()) return std::nullopt;
  return makeHandle<Source>(driver::unpack<std::int64_t>(identity));
}

std::optional<Event> createEvent() {
  const auto pointer = ask(Function::createEvent);
  if (pointer.isNothing()) return std::nullopt;
  EventImage image;
  image.location = driver::unpack<platform::Point>(pointer);
  return makeHandle<Event>(std::move(image));
}

std::optional<Event> createMouseEvent(const Source* source, EventType type, platform::Point point,
                                      MouseButton button) {
  EventImage image;
  image.type = static_cast<std::uint32_t>(type);
  image.location = point;
  image.fromSource = source != nullptr;
  return makeEvent(ask(Function::createMouseEvent, type, point, button), std::move(image));
}

std::optional<Event> createScrollEvent(std::int32_t vertical, std::int32_t horizontal) {
  EventImage image;
  image.type = static_cast<std::uint32_t>(EventType::scrollWheel);
  image.vertical = vertical;
  image.horizontal = horizontal;
  return makeEvent(ask(Function::createScrollEvent, vertical, horizontal), std::move(image));
}

std::optional<Event> createKeyboardEvent(std::uint16_t keyCode, bool down) {
  EventImage image;
  image.type = static_cast<std::uint32_t>(down ? EventType::keyDown : EventType::keyUp);
  image.keyCode = keyCode;
  return makeEvent(ask(Function::createKeyboardEvent, keyCode, down), std::move(image));
}

platform::Point location(const Event& event) { return objectOf<EventImage>(event).location; }

void setLocation(const Event& event, platform::Point point) {
  objectOf<EventImage>(event).location = point;
}

void setFlags(const Event& event, std::uint64_t flags) {
  objectOf<EventImage>(event).flags = flags;
}

void setText(const Event& event, std::u16string_view text) {
  std::string& bytes = objectOf<EventImage>(event).text;
  bytes.clear();
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
}

void setField(const Event& event, Field field, std::int64_t value) {
  objectOf<EventImage>(event).publicFields.push_back({static_cast<std::uint32_t>(field), value});
}

void postToPid(platform::Pid pid, const Event& event) {
  ask(Function::publicPost, pid, objectOf<EventImage>(event));
}

double secondsSinceLast(EventType type) {
  return simulated::askFor<double>(Function::secondsSinceLast, type);
}

}  // namespace quartz
