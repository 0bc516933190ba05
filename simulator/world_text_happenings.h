#pragma once

#include "simulator/world.h"
#include "simulator/world_text_words.h"

namespace simulator {

/// Reads a happening up to the end of the line. Applications are those of the world.
Happening readHappening(Words& words, const World& world);

}  // namespace simulator
