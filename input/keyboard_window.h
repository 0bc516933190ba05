#pragma once

#include <optional>

#include "input/target_window.h"
#include "platform/ax.h"
#include "platform/types.h"
#include "platform/workspace.h"

namespace driver {

/// The sheet that lies on the window, on its sheet, and so on, 64 of them at most; the window
/// itself when it has none. Where there are several, none of them is chosen.
ax::Element innermostSheet(const ax::Element& window);

/// True when a sheet lies on one of the application's windows, whatever the window scope.
bool hasSheet(const ax::Element& application);

/// The one window of the process that the server has for a window element: the one with its number,
/// or where that is not known, with its title and, to two points, its frame. None when there is
/// none, or when there are several.
std::optional<TargetWindow> inputWindow(const ax::Element& window, platform::Pid pid);

/// Where keyboard input to an application goes: its focused window, or, when that is outside the
/// window scope, the first within; or the sheet on it. None when the server does not know it for
/// sure.
std::optional<TargetWindow> keyboardWindow(const workspace::Application& app);

/// An open or save panel, which a service of the system shows in a process of its own.
struct RemoteOpenPanel {
  workspace::Application service;
  TargetWindow window;
};

/// The one such panel whose top left corner is, to two points, that of the application's target
/// window.
std::optional<RemoteOpenPanel> remoteOpenPanel(const workspace::Application& app,
                                               const TargetWindow& sheetWindow);

}  // namespace driver
