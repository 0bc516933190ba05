#pragma once

#include <vector>

namespace mutant {

/// Numbers are below this.
constexpr int numbersMax = 500'000;

/// The mistakes whose places were reached since the last time. Only when they are noted.
std::vector<int> takeReached();

}  // namespace mutant
