#pragma once

#include <cstdint>

#include "input/target_window.h"
#include "platform/quartz.h"
#include "platform/types.h"

namespace driver {

/// What makes the window server deliver pointer events to one window without the user's pointer.
struct PointerTarget {
  platform::Pid pid = 0;
  TargetWindow window;
  std::int64_t clickGroup = 0;  // the same for all events of one input
  bool chromium = false;
};

/// A number for the click group of an input that begins now.
std::int64_t newClickGroup();

/// The point in the window's own space, its origin at the window's top left.
platform::Point windowLocal(const TargetWindow& window, platform::Point point);

/// Sets one of the event's fields by the private setter, which is present.
void setPrivateField(const quartz::Event& event, quartz::Field field, std::int64_t value);

/// Directs the event at the target: process, window and click group. The private setter is present.
void address(const quartz::Event& event, const PointerTarget& target);

}  // namespace driver
