#pragma once

#include <string>

namespace companion {

/// Shows the Mac that SIMULATED_MAC names to a browser: prints the page's address as its one line,
/// and serves until the Mac has gone. It asks the Mac for news only while a page is open. Throws
/// Failure.
void viewMac(const std::string& port);

}  // namespace companion
