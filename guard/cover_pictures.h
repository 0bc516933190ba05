#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/image.h"
#include "platform/types.h"

namespace driver {

/// The application bundle that a tool at this path, free of links, belongs to: three folders above
/// it. None when that is no application bundle.
std::optional<std::string> enclosingBundle(std::string_view toolPath);

/// The icon of the application bundle that this tool belongs to, if any.
std::optional<image::Image> appIcon();

/// The photo in the user's directory record; none when there is none that can be shown.
std::optional<image::Image> userPicture();

/// The photo's bytes in what the directory tool writes of it; none when that has none, or one that
/// is too short to be a photo.
std::optional<platform::Bytes> photoBytes(std::string_view record);

}  // namespace driver
