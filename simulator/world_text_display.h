#pragma once

#include "simulator/world.h"
#include "simulator/world_text_words.h"

namespace simulator {

/// Reads a display up to the end of the line: its number, its size and its options.
Display readDisplay(Words& words);

}  // namespace simulator
