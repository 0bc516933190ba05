#include "tests/costs/footprint/allocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace footprint {

namespace {

struct State {
  bool counting = false;
  int uncounted = 0;  // how many `Uncounted` live
  std::size_t liveBytes = 0;
  Allocations allocations;
};

constinit State state;

/// In front of each block. As long as the strictest alignment, which the block keeps so.
struct alignas(alignof(std::max_align_t)) Header {
  std::size_t countedBytes = 0;  // 0: not counted
};

void* take(std::size_t size) {
  auto* header = static_cast<Header*>(std::malloc(sizeof(Header) + size));
  if (header == nullptr) std::abort();
  const bool counted = state.counting && state.uncounted == 0;
  *header = {counted ? size : 0};
  if (counted) {
    ++state.allocations.count;
    state.liveBytes += size;
    state.allocations.peakBytes = std::max(state.allocations.peakBytes, state.liveBytes);
  }
  return header + 1;
}

void give(void* block) {
  if (block == nullptr) return;
  Header* header = static_cast<Header*>(block) - 1;
  state.liveBytes -= std::min(state.liveBytes, header->countedBytes);
  std::free(header);
}

}  // namespace

void countAllocations() { state = {true, 0, 0, {}}; }

Allocations countedAllocations() {
  state.counting = false;
  return state.allocations;
}

Uncounted::Uncounted() { ++state.uncounted; }
Uncounted::~Uncounted() { --state.uncounted; }

}  // namespace footprint

void* operator new(std::size_t size) { return footprint::take(size); }
void* operator new[](std::size_t size) { return footprint::take(size); }
void operator delete(void* block) noexcept { footprint::give(block); }
void operator delete[](void* block) noexcept { footprint::give(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { footprint::give(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { footprint::give(block); }
