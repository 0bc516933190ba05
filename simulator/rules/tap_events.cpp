#include "simulator/rules/tap_events.h"

#include <cstdlib>

#include "simulator/rules/rule.h"

namespace simulator {

bool isNotice(const tap::Event& event) {
  return event.type == tap::disabledByTimeout || event.type == tap::disabledByUserInput;
}

bool isMovement(const tap::Event& event) {
  return event.type == static_cast<std::uint32_t>(quartz::EventType::mouseMoved);
}

bool isUsers(const tap::Event& event) {
  if (event.sourceUserData == ownEventTag) return false;
  return !isMovement(event) || std::abs(event.deltaX) + std::abs(event.deltaY) >= 2;
}

}  // namespace simulator
