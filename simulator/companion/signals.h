#pragma once

#include <signal.h>
#include <sys/signalfd.h>

#include <initializer_list>
#include <optional>

#include "simulator/companion/descriptor.h"

namespace companion {

/// Some signals, held back and read from a descriptor instead.
class Signals {
 public:
  /// Throws Failure.
  explicit Signals(std::initializer_list<int> numbers);

  int descriptor() const { return descriptor_.number(); }

  /// The next signal that has come; none when there is none now.
  std::optional<signalfd_siginfo> next() const;

  /// Lets this process receive signals as it did before: for a child that runs another program.
  void restore() const;

 private:
  sigset_t previous_{};
  Descriptor descriptor_;
};

}  // namespace companion
