#pragma once

#include <sched.h>

namespace testing_support {

/// While one is there, its thread, and those that it starts, stay on one processor: threads of
/// which one runs at a time pass on their turns faster there.
class OneProcessor {
 public:
  OneProcessor() {
    sched_getaffinity(0, sizeof before_, &before_);
    cpu_set_t present;
    CPU_ZERO(&present);
    CPU_SET(sched_getcpu(), &present);
    sched_setaffinity(0, sizeof present, &present);
  }
  OneProcessor(const OneProcessor&) = delete;
  OneProcessor& operator=(const OneProcessor&) = delete;
  ~OneProcessor() { sched_setaffinity(0, sizeof before_, &before_); }

 private:
  cpu_set_t before_ = {};
};

}  // namespace testing_support
