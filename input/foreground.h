#pragma once

#include <optional>

#include "platform/types.h"

namespace driver {

/// The process in front, asked afresh; none when the system does not tell.
std::optional<platform::Pid> foregroundPID();

}  // namespace driver
