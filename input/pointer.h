#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "input/target_window.h"
#include "main/replies.h"
#include "platform/types.h"
#include "platform/workspace.h"

namespace driver {

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
