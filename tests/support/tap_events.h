#pragma once

#include <cstdint>

#include "platform/event_tap.h"
#include "platform/quartz.h"

namespace testing_support {

/// What a tap hears of an event that nobody has tagged.
inline tap::Event eventOf(quartz::EventType type, platform::Point point = {}) {
  tap::Event made;
  made.type = static_cast<std::uint32_t>(type);
  made.location = point;
  return made;
}

inline tap::Event keyDown(std::int64_t code, std::uint64_t flags = 0) {
  tap::Event made = eventOf(quartz::EventType::keyDown);
  made.keyCode = code;
  made.flags = flags;
  return made;
}

}  // namespace testing_support
