#pragma once

#include <string>

#include "simulator/scheduler.h"

/// What the program says of itself and of a Mac.
namespace companion {

/// This program and its version: "simulated-mac 0.9.0".
std::string versionText();

/// "real" or "virtual".
std::string timeName(simulator::Scheduler::Time time);

}  // namespace companion
