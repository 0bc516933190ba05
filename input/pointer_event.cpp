#include "input/pointer_event.h"

#include "input/sky.h"
#include "platform/loop.h"

namespace driver {

namespace {

constexpr std::uint64_t clickGroupCount = 1'000'000'000;
constexpr std::int64_t touchSubtype = 3;

}  // namespace

std::int64_t newClickGroup() {
  return static_cast<std::int64_t>(loop::uptimeNanoseconds() % clickGroupCount);
}

Point windowLocal(const TargetWindow& window, Point point) {
  return {point.x - window.bounds.x, point.y - window.bounds.y};
}

void setPrivateField(const quartz::Event& event, quartz::Field field, std::int64_t value) {
  Sky::setField()(event.get(), static_cast<std::uint32_t>(field), value);
}

void address(const quartz::Event& event, const PointerTarget& target) {
  setPrivateField(event, quartz::Field::mouseSubtype, touchSubtype);
  setPrivateField(event, quartz::Field::targetProcess, target.pid);
  setPrivateField(event, quartz::Field::targetWindow, target.window.id);
  setPrivateField(event, quartz::Field::clickGroup, target.clickGroup);
  setPrivateField(event, quartz::Field::windowUnderPointer, target.window.id);
  setPrivateField(event, quartz::Field::windowThatCanHandle, target.window.id);
}

}  // namespace driver
