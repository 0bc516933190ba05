#pragma once

#include <string_view>

#include "main/globals.h"
#include "platform/types.h"

namespace driver {

inline constexpr std::string_view invalidFocusRelease = "invalid focus release";

/// True when a capture session, of this process or of another, holds the process's input focus:
/// then commands neither give it nor take it back.
bool inputFocusHeld(platform::Pid pid);

/// Ends one hold of this process, or all of them. With the last, focus is taken back, unless the
/// process is in front or the foreground is unknown. Without a hold nothing is done.
void releaseInputFocus(platform::Pid pid, bool all = false);

/// "focus-release": takes back the focus that another process of this tool left behind.
void focusReleaseCommand(const Arguments& arguments);

}  // namespace driver
