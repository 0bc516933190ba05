#pragma once

#include <string_view>

#include "platform/process.h"
#include "platform/share.h"
#include "platform/types.h"

namespace driver {

/// What the system calls the sharing of a window that is operated.
inline constexpr std::string_view sharingName =
    "Zentrove Desk \xC2\xB7 background operation in this window";

/// How a window of this frame is shared at the lowest useful cost: one frame a second, 640 pixels
/// on its longer side at most, 2 by 2 at least. Child windows are asked for where the system, of
/// this version, can share them.
share::StreamConfiguration streamConfiguration(const platform::Rect& frame,
                                               process::Version version);

}  // namespace driver
