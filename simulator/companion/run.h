#pragma once

#include <string>
#include <vector>

namespace companion {

/// Serves a Mac to one command and gives the command's exit status, or 128 and the number of the
/// signal that ended it. Throws Failure and UsageError.
int runCommand(const std::vector<std::string>& words);

}  // namespace companion
