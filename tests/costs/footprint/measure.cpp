#include "tests/costs/footprint/measure.h"

#include <chrono>

#include "tests/costs/footprint/allocations.h"
#include "tests/support/simulated_run.h"

namespace footprint {

Measure measured(const std::string& commandLine, Shape shape, std::size_t elements) {
  testing_support::TestMac mac("app Notes pid 41\n", {}, testing_support::Mode::direct);
  setTree(shape, elements);
  countAllocations();
  const auto start = std::chrono::steady_clock::now();
  const testing_support::Result run = mac.driver(commandLine);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  const Allocations allocations = countedAllocations();
  return {run.output, messageCount(), allocations.count, allocations.peakBytes, time.count()};
}

}  // namespace footprint
