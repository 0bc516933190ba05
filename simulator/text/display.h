#pragma once

#include "simulator/text/words.h"
#include "simulator/world/world.h"

namespace simulator {

/// Reads a display up to the end of the line: its number, its size and its options.
Display readDisplay(Words& words);

}  // namespace simulator
