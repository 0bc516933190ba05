#include "tests/mutants/mutant.h"

#include <sys/mman.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/mutants/reached.h"

namespace mutant {

int chosen = 0;

namespace {

using Mark = std::atomic<bool>;

Mark* marks = nullptr;

/// Before the constructors of whatever has mistakes. What child processes reach counts too.
__attribute__((constructor(101))) void begin() {
  const char* number = std::getenv("MUTANT");
  if (number != nullptr) chosen = std::atoi(number);
  if (chosen >= 0) return;
  void* shared = mmap(nullptr, numbersMax * sizeof(Mark), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) std::abort();
  marks = new (shared) Mark[numbersMax];
}

}  // namespace

bool reach(int number) {
  marks[number].store(true, std::memory_order_relaxed);
  return false;
}

std::vector<int> takeReached() {
  std::vector<int> reached;
  for (int number = 0; number < numbersMax; ++number) {
    if (!marks[number].load(std::memory_order_relaxed)) continue;
    marks[number].store(false, std::memory_order_relaxed);
    reached.push_back(number);
  }
  return reached;
}

}  // namespace mutant
