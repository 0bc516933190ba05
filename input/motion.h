#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "input/target_window.h"
#include "platform/types.h"
#include "platform/workspace.h"

namespace driver {

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

}  // namespace driver
