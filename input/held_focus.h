#pragma once

#include <cstddef>
#include <string_view>

#include "main/arguments.h"
#include "platform/types.h"

namespace driver {

inline constexpr std::string_view invalidFocusRelease = "invalid focus release";

/// True when a capture session, of this process or of another, holds the process's input focus:
/// then commands neither give it nor take it back.
bool inputFocusHeld(platform::Pid pid);

/// Ends one hold of this process, or all of them. With the last, focus is taken back, unless the
/// process is in front or the foreground is unknown. Without a hold nothing is done.
void releaseInputFocus(platform::Pid pid, bool all = false);

/// Notes a hold of this process on the focus that `window` of the process `pid` is going to be
/// given. A holder that `renews` its own hold only moves it to the window, if there still is one.
/// True when the process was held before.
bool noteHeldFocus(platform::Pid pid, platform::WindowNumber window, bool renews);

/// How many processes are held.
std::size_t heldFocusCount();

/// Ends all holds of this process, as it ends. Comes back when nothing is being given back any
/// more, by other flows either.
void releaseAllInputFocus();

/// "focus-release": takes back the focus that another process of this tool left behind.
void focusReleaseCommand(const Arguments& arguments);

}  // namespace driver
