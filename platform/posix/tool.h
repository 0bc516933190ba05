#pragma once

#include <optional>
#include <string>
#include <vector>

namespace posix {

/// Runs a program and gives all that it writes to standard output once it has ended, whatever its
/// status. Its standard input is empty, its standard error is discarded, it inherits no other
/// descriptor on a Mac, and signals do to it what they do by default. None when it cannot be
/// started.
std::optional<std::string> toolOutput(const std::string& path,
                                      const std::vector<std::string>& arguments);

}  // namespace posix
