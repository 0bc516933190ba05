#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/image.h"

namespace driver {

/// The application bundle that a tool at this path, free of links, belongs to: three folders above
/// it. None when that is no application bundle.
std::optional<std::string> enclosingBundle(std::string_view toolPath);

/// The icon of the application bundle that this tool belongs to, if any.
std::optional<image::Image> appIcon();

}  // namespace driver
