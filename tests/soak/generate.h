#pragma once

#include "tests/soak/case.h"

namespace soak {

/// The case of a seed: the same on every machine and with every compiler.
Case generate(std::uint64_t seed);

}  // namespace soak
