#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstddef>

#include "platform/posix/process.h"

namespace posix {

namespace {

// Faults of the process itself, and signals that others may send it.
constexpr std::array fatalSignals = {
    SIGSEGV, SIGBUS,  SIGILL,  SIGFPE,  SIGABRT,   SIGTRAP, SIGSYS,  SIGQUIT,
    SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF, SIGALRM,
#ifdef SIGEMT
    SIGEMT,  // on a Mac
#endif
};
constexpr std::size_t lastStackBytes = std::size_t{256} * 1024;
constexpr unsigned patienceSeconds = 2;

using Act = void (*)();

std::atomic<Act>& lastActOfProcess() {
  static constinit std::atomic<Act> act = nullptr;
  return act;
}

// Takes effect when the signal's handler returns.
void dieOnReturn(int number) {
  signal(number, SIG_DFL);
  raise(number);
}

// What the signal has left half done, a lock of the allocator for example, may hold it up for ever.
void limitTheLastAct() {
  signal(SIGALRM, SIG_DFL);
  sigset_t alarms;
  sigemptyset(&alarms);
  sigaddset(&alarms, SIGALRM);
  pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
  alarm(patienceSeconds);
}

void meetFatalSignal(int number) {
  static constinit std::atomic<bool> hasBegun = false;
  static constinit std::atomic<pthread_t> actor = pthread_t{};
  if (hasBegun.exchange(true)) {
    if (pthread_equal(actor, pthread_self())) return dieOnReturn(number);
    for (;;) pause();
  }
  actor = pthread_self();
  limitTheLastAct();
  lastActOfProcess().load()();
  dieOnReturn(number);
}

void setLastStackAside() {
  alignas(std::max_align_t) static constinit std::array<std::byte, lastStackBytes> memory = {};
  stack_t stack = {};
  stack.ss_sp = memory.data();
  stack.ss_size = memory.size();
  sigaltstack(&stack, nullptr);
}

}  // namespace

void onFatalSignal(void (*lastAct)()) {
  lastActOfProcess() = lastAct;
  setLastStackAside();
  struct sigaction action = {};
  action.sa_handler = meetFatalSignal;
  action.sa_flags = SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (const int number : fatalSignals) sigaction(number, &action, nullptr);
}

}  // namespace posix
