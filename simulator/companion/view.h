#pragma once

#include <string>
#include <vector>

namespace companion {

/// "view" and perhaps a port: shows the Mac that SIMULATED_MAC names to a browser, prints the
/// page's address as its one line, and ends with the Mac. It asks the Mac for news only while a
/// page is open. Throws Failure and UsageError.
int viewCommand(const std::vector<std::string>& words);

}  // namespace companion
