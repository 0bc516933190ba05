#pragma once

#include <functional>

#include "tests/soak/case.h"

namespace soak {

/// Makes a case smaller for as long as it still fails: takes out steps, lines of the world with all
/// that belongs to them, what lines have to say, happenings, faults, deliveries, variables, words
/// and parts of long texts, many at once and then one by one. `fails` says whether a case fails as
/// it should; it is asked some hundreds or thousands of times.
Case shrunk(Case one, const std::function<bool(const Case& one)>& fails);

}  // namespace soak
