#pragma once

#include <cstdint>
#include <string>

#include "main/arguments.h"

namespace driver {

/// Keeps the display from sleeping as long as this process lives. `reason` is what the system shows
/// for it. The number of the hold; 0 when the system refuses it.
std::uint32_t holdDisplayAwake(const std::string& reason);

/// "keep-awake": holds the display awake until the process is ended. Replies whether that works,
/// and ends with status 1 when it does not.
void keepAwakeCommand(const Arguments& arguments);

}  // namespace driver
