#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/value.h"
#include "main/arguments.h"
#include "platform/types.h"
#include "platform/workspace.h"

namespace driver {

/// The running application that `reference` names: "pid:" and a process id; else a bundle
/// identifier; else a localised name. The first of several.
std::optional<workspace::Application> runningApp(const std::string& reference);

/// The shortest side of what counts as a window of an application, in points. What is smaller is a
/// status item or a sliver, which nobody operates.
inline constexpr double smallestWindowSide = 40;

/// The first of the layers that are the system's: screen savers, shields, cursors.
inline constexpr std::int64_t firstSystemLayer = 1000;

/// A window as "windows" lists it: 0 and empty for what the server does not tell.
struct ListedWindow {
  std::int64_t number = 0;
  std::int64_t layer = 0;
  std::string title;
  platform::Rect frame;  // finite
};

/// The on-screen windows of a process that are in the window scope, front to back. Slivers, and
/// windows without a finite frame, are left out.
std::vector<ListedWindow> listedWindows(platform::Pid pid);

/// The same as reply objects.
Value::List windows(platform::Pid pid);

/// True for a running application that shows in the Dock.
bool isRegularApp(platform::Pid pid);

/// "permissions": what this tool is allowed to do. Never prompts.
void permissionsCommand(const Arguments& arguments);

/// "scene": the frontmost application and the pointer.
void sceneCommand(const Arguments& arguments);

/// "session": whether the login session is locked, and on the console.
void sessionCommand(const Arguments& arguments);

/// "windows": whether an application runs, and its windows.
void windowsCommand(const Arguments& arguments);

}  // namespace driver
