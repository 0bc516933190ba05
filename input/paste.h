#pragma once

#include <string>
#include <vector>

#include "main/arguments.h"
#include "platform/types.h"

namespace driver {

/// The files that the arguments from the fourth word on name, as absolute paths; they need not
/// exist. Fails for a path that is no well-formed text, and for a relative one when there is no
/// current directory.
std::vector<std::string> filePaths(const Arguments& arguments);

/// Pastes files into a process, through the clipboard, which the user has back afterwards. Throws
/// InputFailure when the clipboard or the paste refuses.
void pasteFiles(const std::vector<std::string>& paths, platform::Pid pid);

}  // namespace driver
