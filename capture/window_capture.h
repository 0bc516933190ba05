#pragma once

#include <string>

#include "main/replies.h"

namespace driver {

/// Writes a picture of the application's windows, and of the helper windows over them, to a PNG
/// file and describes its geometry. Throws PlatformError when the system refuses; fails when there
/// is no display, no window on it, or no way to write the file.
Reply capture(const std::string& app, const std::string& path);

}  // namespace driver
