#pragma once

#include <optional>

#include "platform/types.h"
#include "platform/window_server.h"

namespace driver {

/// The window that input goes to.
struct TargetWindow {
  platform::WindowNumber id = 0;
  platform::Rect bounds;  // global points, finite
};

/// The number by which the server names a window; none when it gives no such number: it has none,
/// or 0, or one that no window can have.
std::optional<platform::WindowNumber> numberOf(const windowserver::Window& window);

/// The bounds that the server gives for a window; none unless all four values are there and finite.
std::optional<platform::Rect> boundsOf(const windowserver::Window& window);

/// The frontmost window of the process under a global point, among those that may be operated:
/// below the system's layers, and in the window scope or untitled. None when there is none, or when
/// the server does not say which it is.
std::optional<TargetWindow> windowAt(platform::Pid pid, platform::Point point);

}  // namespace driver
