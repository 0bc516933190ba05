#pragma once

#include <string>

namespace companion {

/// Prints a line, and nothing after it: whoever reads the output to its end need not wait for this
/// process's. Throws Failure.
void printOnly(const std::string& line);

}  // namespace companion
