#pragma once

#include <string>

#include "tests/soak/play.h"

namespace soak {

/// The first line of a run that is not as the contract's schema of its command has it.
std::string lineOutsideOfContract(const Case& one, const Played& played);

}  // namespace soak
