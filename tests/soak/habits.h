#pragma once

#include <string_view>

#include "tests/soak/case.h"
#include "tests/soak/features.h"

namespace soak {

/// Adds what elements of this role may have to the line: values, ranges, choices, habits of fields.
void addHabits(Random& random, const Features& features, std::string_view role, WorldLine& line);

/// The same of what any element may have: a help text, a state, lies.
void addCommonHabits(Random& random, const Features& features, WorldLine& line);

}  // namespace soak
