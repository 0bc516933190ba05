#pragma once

#include <string>

#include "simulator/world/world.h"

namespace simulator {

/// Presses an enabled element, by a click or an action: a menu's item is chosen, a button's menu
/// opens or closes, and the reactions run, in order. Gives a sentence for the journal. References
/// to elements are void from then on.
std::string press(World& world, Application& application, ElementId id);

}  // namespace simulator
