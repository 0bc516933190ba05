#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "input/target_window.h"
#include "main/replies.h"
#include "platform/quartz.h"
#include "platform/types.h"
#include "platform/workspace.h"

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

/// Clicks into a window of an application that stays in the background. `button` is "left" or
/// "right". Returns what made it impossible; none when the events were posted, or withheld because
/// the session became unusable.
std::optional<std::string> backgroundClick(const workspace::Application& app,
                                           const TargetWindow& window, platform::Point point,
                                           std::int64_t count, const std::string& button);

/// How far to scroll, in lines.
struct Scroll {
  std::int32_t horizontal = 0;
  std::int32_t vertical = 0;
};

/// Moves the pointer of an application that stays in the background to `from`, or scrolls there.
/// With `to`, a drag, which is always refused. Returns what made it impossible; none when the event
/// was posted, or withheld because the session became unusable.
std::optional<std::string> backgroundMotion(const workspace::Application& app,
                                            const TargetWindow& window, platform::Point from,
                                            const std::optional<platform::Point>& to,
                                            const std::optional<Scroll>& scroll);

/// Delivers one pointer input; returns what made it impossible.
using SendAction = std::function<std::optional<std::string>(
    const workspace::Application& app, const TargetWindow& window, platform::Point point)>;

/// The frame of all background pointer input: finds the application and its window under the global
/// point, runs `send`, and watches for up to three rounds of 200 ms whether anything changed.
Reply background(const std::string& app, platform::Point point, const SendAction& send);

}  // namespace driver
