#pragma once

#include <string>

#include "tests/soak/play.h"

namespace soak {

/// The first run that came to something else than the second reading of the commands' reference
/// says. It has an opinion only of runs that follow one another on a Mac without faults, see
/// `mayBeForetold`.
std::string difference(const Case& one, const Played& played);

}  // namespace soak
