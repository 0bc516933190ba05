#pragma once

#include "platform/call.h"
#include "simulator/world/random.h"
#include "simulator/world/world.h"

/// What is left to chance on a Mac whose world has a seed: how long calls take.
namespace simulator {

/// How long a call of the function takes this time, beside what the world says. Nothing for calls
/// that ask nobody but the process itself.
Microseconds chanceDelay(Random& random, platform::Function function);

}  // namespace simulator
