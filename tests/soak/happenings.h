#pragma once

#include "tests/soak/case.h"
#include "tests/soak/sketch.h"

namespace soak {

/// What the features let happen on this Mac within `duration`, as lines of its world, in the order
/// of their times. The user does several things in a row.
std::vector<WorldLine> someHappenings(Random random, const MacSketch& mac, Microseconds duration);

/// One happening, without its time; empty when the features allow for none.
std::string someHappening(Random& random, const MacSketch& mac);

}  // namespace soak
