#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "input/target_window.h"
#include "platform/types.h"
#include "platform/workspace.h"

namespace driver {

/// Clicks into a window of an application that stays in the background. `button` is "left" or
/// "right". Returns what made it impossible; none when the events were posted, or withheld because
/// the session became unusable.
std::optional<std::string> backgroundClick(const workspace::Application& app,
                                           const TargetWindow& window, platform::Point point,
                                           std::int64_t count, const std::string& button);

}  // namespace driver
