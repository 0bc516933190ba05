#pragma once

#include <string>

namespace oracle {

/// The effects of a run as `Expectation` has them, from those that a run is told to have had:
/// without the two writes that enable accessibility, and without what an application makes of a
/// write or a paste later.
std::string comparableEffects(const std::string& effects);

}  // namespace oracle
