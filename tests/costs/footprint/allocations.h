#pragma once

#include <cstddef>

/// Counts what a program takes from the free store through `new`, in one thread.
namespace footprint {

struct Allocations {
  std::size_t count = 0;
  std::size_t peakBytes = 0;  // the most that lived at one time
};

/// Counts from here on, until `countedAllocations`.
void countAllocations();
Allocations countedAllocations();

/// While one lives, nothing is counted.
class Uncounted {
 public:
  Uncounted();
  ~Uncounted();
  Uncounted(const Uncounted&) = delete;
  Uncounted& operator=(const Uncounted&) = delete;
};

}  // namespace footprint
