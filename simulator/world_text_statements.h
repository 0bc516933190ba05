#pragma once

#include "simulator/world_text_builder.h"
#include "simulator/world_text_words.h"

namespace simulator {

/// Reads a line that belongs to nothing: `app`, `display`, `at` …
WorldBuilder::Place readStatement(Words& words, WorldBuilder& builder);

}  // namespace simulator
