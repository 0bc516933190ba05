#pragma once

#include <vector>

#include "simulator/text/words.h"
#include "simulator/world/world.h"

namespace simulator {

/// Reads reactions between semicolons, up to the end of the line, `press:`, `right:` or
/// `submit:`.
std::vector<Reaction> readReactions(Words& words, const char* owner);

}  // namespace simulator
