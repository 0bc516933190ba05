#pragma once

#include <cstdint>
#include <optional>

#include "platform/types.h"

namespace driver {

/// A picture's side in whole pixels: the integer part, at least 1 and at most 16,384 (the longest
/// side of a picture on this hardware). 1 for what is not a number.
std::uint64_t pixelCount(double side);

/// The raw pixels of one window at half size, fit only to be compared with another such picture of
/// the same window. None when the window is not on screen or cannot be captured.
std::optional<platform::Bytes> windowImage(platform::WindowNumber number);

}  // namespace driver
