#pragma once

#include <cstdint>
#include <optional>

#include "platform/event_tap.h"

namespace driver {

/// Makes a tap that the main flow serves and that is enabled, and keeps it in `made`, which its
/// handler may read at once. False when the system gives none, one that would see no keys, or one
/// that does not work.
bool makeWorkingTap(std::optional<tap::Tap>& made, tap::Place place, tap::Kind kind,
                    std::uint64_t mask, tap::Handler handler);

}  // namespace driver
