#pragma once

#include <string>
#include <vector>

namespace companion {

/// Serves a Mac until it is told to stop. Prints the socket's name as its one line. Throws Failure
/// and UsageError.
int serveCommand(const std::vector<std::string>& words);

}  // namespace companion
