#pragma once

#include <vector>

#include "simulator/world/world.h"

/// What comes of itself when all lines of a world have been read.
namespace simulator {

/// An application's focus is in the window of its focused element, or in its first one, but of
/// those that are `without`, by their places.
void settleFocus(World& world, const std::vector<bool>& without);

/// Hidden applications hide their windows, and the front one's lie in front.
void settleWindows(World& world);

/// By time; equal times stay in the order of the text.
void sortScript(World& world);

}  // namespace simulator
