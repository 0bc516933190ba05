#pragma once

#include "tests/soak/case.h"
#include "tests/soak/sketch.h"

namespace soak {

/// Adds an application, with its windows, menus and elements, to the world and to the sketch. Its
/// process id and its windows' numbers come from `number`, its place among the applications.
void addApplication(Random& random, std::size_t number, bool frontmost, MacSketch& mac,
                    std::vector<WorldLine>& world);

}  // namespace soak
