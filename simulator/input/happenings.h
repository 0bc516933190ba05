#pragma once

#include "simulator/world/world.h"

namespace simulator {

/// Lets something happen that no client asked for.
void happen(World& world, const Happening& happening);

}  // namespace simulator
