#pragma once

#include <optional>
#include <string>

#include "base/value.h"
#include "main/arguments.h"
#include "platform/types.h"
#include "platform/workspace.h"

namespace driver {

/// The running application that `reference` names: "pid:" and a process id; else a bundle
/// identifier; else a localised name. The first of several.
std::optional<workspace::Application> runningApp(const std::string& reference);

/// The on-screen windows of a process that are in the window scope, front to back, as reply
/// objects. Slivers, and windows without a finite frame, are left out.
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
