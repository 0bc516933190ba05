#pragma once

#include <cstddef>
#include <string>

#include "accessibility/snapshot.h"

namespace driver {

/// The static texts in and below the element, in reading order, joined by spaces and cut to
/// `maxLength` characters. Visits `budget` elements at most; none when it is negative. Of each it
/// reads `each`, and the value of a static text; a walk that comes to them later finds it read.
std::string axText(Snapshot& element, const Batch& each, int budget = 40,
                   std::size_t maxLength = 120);

}  // namespace driver
