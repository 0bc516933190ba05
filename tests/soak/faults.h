#pragma once

#include <string>
#include <vector>

#include "tests/soak/sketch.h"

namespace soak {

/// What goes wrong with calls, as simulator::parseFault reads it.
std::vector<std::string> someFaults(Random random, const MacSketch& mac);

}  // namespace soak
