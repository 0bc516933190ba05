#pragma once

#include "simulator/text/words.h"
#include "simulator/world/world.h"

namespace simulator {

/// Reads a happening up to the end of the line. Applications are those of the world.
Happening readHappening(Words& words, const World& world);

}  // namespace simulator
