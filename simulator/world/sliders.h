#pragma once

#include <string>

#include "simulator/world/world.h"

namespace simulator {

/// What a slider shows when it is to show `value`: not beyond its limits, and whole when it held a
/// whole number before and the value is one.
AttributeValue withinLimits(const Element& slider, double value);

/// Moves the slider by a step, up for a `direction` of 1 and down for -1. Gives a sentence for the
/// journal.
std::string moveSlider(const Application& application, Element& slider, double direction);

}  // namespace simulator
