#pragma once

#include "simulator/text/words.h"
#include "simulator/world/world.h"

namespace simulator {

/// Throws for what no Mac can have come to, and none could go on with: an id of no element, windows
/// or elements in a circle. The failure is one of the words' line.
void checkSoundness(const Words& words, const World& world);

}  // namespace simulator
