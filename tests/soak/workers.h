#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/soak/coverage.h"
#include "tests/soak/options.h"

namespace soak {

/// A seed that failed.
struct Failure {
  std::uint64_t seed = 0;
  std::string judge;
  std::string text;
};

/// What came of playing many seeds.
struct Tally {
  std::uint64_t cases = 0;
  std::uint64_t runs = 0;              // of the driver
  std::uint64_t simulatedSeconds = 0;  // in virtual time
  double seconds = 0;                  // in real time
  double processorSeconds = 0;         // of all jobs
  std::vector<Failure> failures;       // by seed
  Coverage coverage;                   // where it was asked for
};

/// Plays seeds from `options.seed` on, in processes of their own: so what ends the process, or does
/// not come to an end, is a failing seed like any other.
Tally playSeeds(const Options& options);

}  // namespace soak
