#pragma once

#include "simulator/text/builder.h"
#include "simulator/text/words.h"

namespace simulator {

/// Reads a line that belongs to nothing: `app`, `display`, `at` …
WorldBuilder::Place readStatement(Words& words, WorldBuilder& builder);

}  // namespace simulator
