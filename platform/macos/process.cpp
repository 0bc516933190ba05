#include "platform/process.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "platform/posix/process.h"

namespace process {

namespace {

// Two threads must not call exit(): the one that comes second waits for the end.
void claimTheEnd(int status) {
  static std::atomic_flag claimed = ATOMIC_FLAG_INIT;
  thread_local bool claimedHere = false;
  if (!claimed.test_and_set()) {
    claimedHere = true;
    return;
  }
  // From an exit handler of this thread, which nobody else will ever finish.
  if (claimedHere) _exit(status);
  for (;;) pause();
}

}  // namespace

std::optional<std::string> environment(const char* name) { return posix::environment(name); }

bool acceptsNullSignal(platform::Pid pid) { return posix::acceptsNullSignal(pid); }

void exit(int status) {
  claimTheEnd(status);
  std::exit(status);
}

}  // namespace process
