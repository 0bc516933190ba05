#pragma once

#include <cstddef>
#include <string>

#include "tests/costs/footprint/tree.h"

/// What the product takes from the free store for a command on a large tree.
namespace footprint {

struct Measure {
  std::string reply;
  std::size_t messages = 0;     // to the application
  std::size_t allocations = 0;  // counted outside the seam
  std::size_t peakBytes = 0;
  double seconds = 0;
};

/// Of one run of a command line about "Notes".
Measure measured(const std::string& commandLine, Shape shape, std::size_t elements);

}  // namespace footprint
