#pragma once

#include <string>

#include "simulator/desktop.h"

/// The present state of a Mac, as a world.
namespace simulator {

/// A world that goes on where the Mac is, but for its processes, which are left out as if they were
/// killed now: with their covers, taps and shared windows. What they have pressed stays.
World presentWorld(const Desktop& desktop);

/// Its text. Comments say which processes are left out. Throws UnwritableWorld.
std::string snapshotText(const Desktop& desktop);

}  // namespace simulator
