#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/value.h"
#include "platform/share.h"
#include "platform/types.h"

/// Which window of an application is shared. Nothing here asks the platform.
namespace driver {

/// The number of the frontmost window of layer 0 that has at least a quarter of the area of the
/// largest. `windows` are entries as `windows` lists them, front to back. None when there is no
/// such window, or when it has no number.
std::optional<std::int64_t> mainWindowNumber(const Value::List& windows);

/// The process's window of this number; null when it is not there. Borrowed from `windows`.
const share::Window* sharedWindow(const std::vector<share::Window>& windows,
                                  platform::WindowNumber number, platform::Pid pid);

/// The process's largest window of layer 0 in the window scope that is no sliver, the first of
/// equals; null when there is none. Borrowed from `windows`.
const share::Window* largestSharedWindow(const std::vector<share::Window>& windows,
                                         platform::Pid pid);

}  // namespace driver
