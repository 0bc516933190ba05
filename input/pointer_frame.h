#pragma once

#include <functional>
#include <optional>
#include <string>

#include "input/target_window.h"
#include "main/replies.h"
#include "platform/types.h"
#include "platform/workspace.h"

namespace driver {

/// Delivers one pointer input; returns what made it impossible.
using SendAction = std::function<std::optional<std::string>(
    const workspace::Application& app, const TargetWindow& window, platform::Point point)>;

/// The frame of all background pointer input: finds the application and its window under the global
/// point, runs `send`, and watches for up to three rounds of 200 ms whether anything changed.
Reply background(const std::string& app, platform::Point point, const SendAction& send);

}  // namespace driver
