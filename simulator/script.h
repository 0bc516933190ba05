#pragma once

#include <cstddef>
#include <cstdint>

#include "simulator/world/world.h"

/// When the lines of a world's script happen, where that is left to chance or they happen again.
namespace simulator {

/// What happens at times that are left to chance gets its times, and all of it its order.
void settleTimes(World& world);

/// What has just happened, and happens again, takes its next place in the script.
void putAgain(World& world, std::size_t index);

/// The world has this seed in place of its own, if it has any: what is left to chance is drawn
/// anew, but for the next time of what happens by the script of a Mac that has run before.
void reseed(World& world, std::uint64_t seed);

}  // namespace simulator
