#include "platform/macos/standins/events.h"

#include <map>
#include <string>
#include <utility>

#include "platform/macos/standins/objects.h"

namespace standins {

namespace {

struct Input {
  CGPoint pointer = {};
  bool refuses = false;
};

Input& input() {
  static Input input;
  return input;
}

std::string text(double number) { return std::to_string(static_cast<long>(number)); }

struct Source : Object {
  explicit Source(CGEventSourceStateID state) : Object(Type::eventSource), state(state) {}
  std::string describe() const override { return "source " + std::to_string(state); }
  CGEventSourceStateID state;
};

struct Event : Object {
  explicit Event(std::string kind)
      : Object(Type::event), kind(std::move(kind)), location(input().pointer) {}
  std::string describe() const override {
    std::string description = kind + " at " + text(location.x) + "," + text(location.y);
    if (flags != 0) description += " flags " + std::to_string(flags);
    for (const auto& [field, value] : fields) {
      description += " " + std::to_string(field) + "=" + std::to_string(value);
    }
    return description;
  }
  std::string kind;
  CGPoint location;
  CGEventFlags flags = 0x100;
  std::map<CGEventField, std::int64_t> fields;
};

CGEventRef event(std::string kind) {
  if (input().refuses) return nullptr;
  return reinterpret_cast<CGEventRef>(entered(new Event(std::move(kind))));
}

}  // namespace

void setPointer(CGPoint point) { input().pointer = point; }

void refuseEvents(bool refuse) { input().refuses = refuse; }

}  // namespace standins

using namespace standins;

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID) {
  if (input().refuses) return nullptr;
  return reinterpret_cast<CGEventSourceRef>(entered(new Source(stateID)));
}

CGEventRef CGEventCreate(CGEventSourceRef source) { return event("empty " + describe(source)); }

CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType mouseType,
                                   CGPoint mouseCursorPosition, CGMouseButton mouseButton) {
  const CGEventRef created = event("mouse " + std::to_string(mouseType) + " button " +
                                   std::to_string(mouseButton) + " " + describe(source));
  if (created != nullptr) CGEventSetLocation(created, mouseCursorPosition);
  return created;
}

CGEventRef CGEventCreateScrollWheelEvent2(CGEventSourceRef source, CGScrollEventUnit units,
                                          uint32_t wheelCount, int32_t wheel1, int32_t wheel2,
                                          int32_t wheel3) {
  return event("scroll unit " + std::to_string(units) + " wheels " + std::to_string(wheelCount) +
               " " + std::to_string(wheel1) + " " + std::to_string(wheel2) + " " +
               std::to_string(wheel3) + " " + describe(source));
}

CGPoint CGEventGetLocation(CGEventRef event) { return as<Event>(event)->location; }

void CGEventSetLocation(CGEventRef event, CGPoint location) {
  as<Event>(event)->location = location;
}

void CGEventSetFlags(CGEventRef event, CGEventFlags flags) { as<Event>(event)->flags = flags; }

void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, int64_t value) {
  as<Event>(event)->fields[field] = value;
}

void CGEventPostToPid(pid_t pid, CGEventRef event) {
  record("post to " + std::to_string(pid) + ": " + describe(event));
}
