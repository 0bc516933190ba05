#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "simulator/desktop.h"

namespace testing_support {

/// Runs the driver inside this process, as this client of the desktop. Virtual time passes with its
/// calls. Returns the exit status.
int runDirect(simulator::Desktop& desktop, std::size_t client,
              const std::vector<std::string>& commandLine);

/// The same for `body` in place of the driver. A body that ends the process does not come back;
/// when it returns, the process does not end, and the result is 0.
int runBodyDirect(simulator::Desktop& desktop, std::size_t client,
                  const std::function<void()>& body);

/// Runs the driver as a child of this process, with the desktop here. Returns the exit status.
int runForked(simulator::Desktop& desktop, std::size_t client,
              const std::vector<std::string>& commandLine);

}  // namespace testing_support
