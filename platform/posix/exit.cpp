#include "platform/posix/exit.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <utility>
#include <vector>

namespace posix {

namespace {

// Never destroyed: it is used while the process ends.
struct Handlers {
  std::mutex access;
  std::vector<std::function<void()>> pending;
};

Handlers& handlers() {
  static auto& handlers = *new Handlers;
  return handlers;
}

std::function<void()> takeNewest() {
  const std::lock_guard lock(handlers().access);
  std::vector<std::function<void()>>& pending = handlers().pending;
  if (pending.empty()) return nullptr;
  std::function<void()> newest = std::move(pending.back());
  pending.pop_back();
  return newest;
}

void runAll() {
  while (const std::function<void()> handler = takeNewest()) handler();
}

// Two threads must not call std::exit(): the one that comes second waits for the end.
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

void exit(int status) {
  claimTheEnd(status);
  std::exit(status);
}

void onExit(std::function<void()> handler) {
  static const int registered = std::atexit(runAll);
  static_cast<void>(registered);
  const std::lock_guard lock(handlers().access);
  handlers().pending.push_back(std::move(handler));
}

}  // namespace posix
