#include "simulator/companion/signals.h"

#include <unistd.h>

#include "simulator/companion/failure.h"

namespace companion {

Signals::Signals(std::initializer_list<int> numbers) {
  sigset_t wanted;
  sigemptyset(&wanted);
  for (const int number : numbers) sigaddset(&wanted, number);
  descriptor_ = Descriptor(signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK));
  if (descriptor() < 0) throw systemFailure("signals cannot be read");
  sigprocmask(SIG_BLOCK, &wanted, &previous_);
}

std::optional<signalfd_siginfo> Signals::next() const {
  signalfd_siginfo signal{};
  if (read(descriptor(), &signal, sizeof signal) != sizeof signal) return std::nullopt;
  return signal;
}

void Signals::restore() const { sigprocmask(SIG_SETMASK, &previous_, nullptr); }

}  // namespace companion
