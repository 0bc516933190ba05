#pragma once

#include "tests/soak/case.h"
#include "tests/soak/sketch.h"

namespace soak {

/// What stands in a window, at the place; adds it to the application's controls. What their presses
/// do is left to `addReactions`.
std::vector<WorldLine> someElements(Random& random, const MacSketch& mac, const Place& place,
                                    ApplicationSketch& application);

/// Something that a press, or the application by itself, does; it has to do with what the
/// application has.
std::string reaction(Random& random, const Features& features,
                     const ApplicationSketch& application);

/// Gives some of the elements among the lines, and some items of menus, something that a press
/// does; what it does has to do with what the application has.
void addReactions(Random& random, const Features& features, const ApplicationSketch& application,
                  std::vector<WorldLine>& lines);

}  // namespace soak
