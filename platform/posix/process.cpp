#include "platform/posix/process.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

namespace posix {

namespace {

constexpr int signalExitStatus = 128;

}  // namespace

std::optional<std::string> environment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr) return std::nullopt;
  return value;
}

bool acceptsNullSignal(std::int32_t pid) { return kill(pid, 0) == 0; }

std::int32_t ownPid() { return getpid(); }

std::string currentDirectory() {
  // It allocates as much as the path needs.
  const std::unique_ptr<char, decltype(&std::free)> path(getcwd(nullptr, 0), std::free);
  return path ? path.get() : "";
}

void ignoreBrokenPipes() { signal(SIGPIPE, SIG_IGN); }

void ignoreStops() {
  for (const int stop : {SIGTSTP, SIGTTIN, SIGTTOU}) signal(stop, SIG_IGN);
}

void dieBySignal(int number) {
  signal(number, SIG_DFL);
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, number);
  pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
  raise(number);
  _exit(signalExitStatus + number);  // should the system not have delivered it
}

}  // namespace posix
