#pragma once

#include <optional>

#include "platform/types.h"

namespace driver {

/// The raw pixels of one window at half size, fit only to be compared with another such picture of
/// the same window. None when the window is not on screen or cannot be captured.
std::optional<platform::Bytes> windowImage(platform::WindowNumber number);

}  // namespace driver
