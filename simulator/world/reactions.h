#pragma once

#include <vector>

#include "simulator/world/world.h"

namespace simulator {

/// Runs the element's reactions to a click, in order: all of them, also when one takes away its
/// window; none after the application has quit.
void react(World& world, Application& application, ElementId id, bool right);

/// The same for any of the element's lists of reactions.
void reactTo(World& world, Application& application, ElementId id,
             std::vector<Reaction> Element::*reactions);

}  // namespace simulator
