#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "main/state_queries.h"
#include "platform/share.h"
#include "platform/types.h"
#include "platform/window_server.h"

/// Which windows a picture of an application shows, and which one of them is shared. Nothing here
/// asks the platform; windows without a finite frame are never chosen.
namespace driver {

/// The application's windows in the window scope, in the given order; after them its untitled ones
/// that overlap one of those, as sheets and popups do.
std::vector<share::Window> keptWindows(const std::vector<share::Window>& windows,
                                       platform::Pid pid);

/// The application's main window among `kept`, which is not empty: the frontmost of the server's
/// windows that is large enough, else the largest, normal windows before others.
const share::Window& mainWindow(const std::vector<share::Window>& kept,
                                const std::vector<windowserver::Window>& frontToBack,
                                platform::Pid pid);

/// The display that shows most of `frame`, the first of equals; none without a display.
std::optional<share::Display> displayFor(const platform::Rect& frame,
                                         const std::vector<share::Display>& displays);

/// True when the two share some area.
bool overlap(const platform::Rect& a, const platform::Rect& b);

/// The smallest rectangle around all frames; `windows` is not empty.
platform::Rect unionOfFrames(const std::vector<share::Window>& windows);

/// Windows of other processes over `area` that are small enough in rank to be helpers, such as
/// input-method panels. Those of regular applications are still among them.
std::vector<share::Window> helperCandidates(const std::vector<share::Window>& windows,
                                            platform::Pid pid, const platform::Rect& area);

/// The number of the frontmost window of layer 0 that has at least a quarter of the area of the
/// largest. `windows` are front to back. None when there is no such window; 0 when it has no
/// number.
std::optional<std::int64_t> mainWindowNumber(const std::vector<ListedWindow>& windows);

/// The process's window of this number; null when it is not there. Borrowed from `windows`.
const share::Window* sharedWindow(const std::vector<share::Window>& windows,
                                  platform::WindowNumber number, platform::Pid pid);

/// The process's largest window of layer 0 in the window scope that is no sliver, the first of
/// equals; null when there is none. Borrowed from `windows`.
const share::Window* largestSharedWindow(const std::vector<share::Window>& windows,
                                         platform::Pid pid);

}  // namespace driver
