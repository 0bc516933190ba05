#pragma once

#include <string>
#include <vector>

namespace companion {

/// Serves a Mac until it is told to stop. Prints the socket's name as its one line. Throws Failure
/// and UsageError.
int serveCommand(const std::vector<std::string>& words);

/// "view" and perhaps a port: becomes the program that shows the Mac that SIMULATED_MAC names in a
/// browser, prints the page's address as its one line, and ends with the Mac. Throws Failure.
int viewCommand(const std::vector<std::string>& words);

/// Serves a Mac to one command and gives the command's exit status, or 128 and the number of the
/// signal that ended it. Throws Failure and UsageError.
int runCommand(const std::vector<std::string>& words);

}  // namespace companion
