#pragma once

#include <string>

#include "tests/soak/features.h"

/// What is said and written in a case: few plain texts, so that the same one comes in several
/// places, and odd ones.
namespace soak {

/// A label of a control, a title of a window: one of a dozen, or of a few; an odd one at times,
/// where there are such.
std::string label(Random& random, const Features& features);
std::string title(Random& random, const Features& features);

/// What stands in a field, or is to be written into one.
std::string prose(Random& random, const Features& features);

/// A text that programs stumble over: ill-formed, empty, long, of other scripts, with marks that
/// mean something. Without null characters.
std::string oddText(Random& random);

/// A word in the place of a number.
std::string oddNumber(Random& random);

}  // namespace soak
