#pragma once

#include <string>

#include "simulator/world/random.h"

/// What is said and written in a case: few plain texts, so that the same one comes in several
/// places, and odd ones.
namespace soak {

using simulator::Random;

/// A label of a control, a title of a window: one of a dozen; with `odd` one of the odd ones at
/// times.
std::string label(Random& random, bool odd);
std::string title(Random& random, bool odd);

/// What stands in a field, or is to be written into one.
std::string prose(Random& random, bool odd);

/// A text that programs stumble over: ill-formed, empty, long, of other scripts, with marks that
/// mean something. Without null characters.
std::string oddText(Random& random);

/// A word in the place of a number.
std::string oddNumber(Random& random);

}  // namespace soak
