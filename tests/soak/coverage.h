#pragma once

#include <set>
#include <string>

#include "tests/soak/play.h"

namespace soak {

/// Which of all that can come together did: for each command what it replied, what happened while
/// it ran, how its calls failed, and these in their combinations. A plain set of texts, so that
/// those of several workers are united easily.
using Coverage = std::set<std::string>;

/// Adds what came together when the case was played.
void addCoverage(const Case& one, const Played& played, Coverage& coverage);

/// A table of what never did, for each command, and how many combinations did.
std::string whatNeverOccurred(const Coverage& coverage);

}  // namespace soak
