#pragma once

#include <optional>
#include <string_view>

#include "platform/image.h"
#include "platform/types.h"

namespace driver {

/// The photo in the user's directory record; none when there is none that can be shown.
std::optional<image::Image> userPicture();

/// The photo's bytes in what the directory tool writes of it; none when that has none, or one that
/// is too short to be a photo.
std::optional<platform::Bytes> photoBytes(std::string_view record);

}  // namespace driver
