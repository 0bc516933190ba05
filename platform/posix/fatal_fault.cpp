#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstddef>

#include "platform/posix/process.h"

namespace posix {

namespace {

constexpr std::array fatalFaults = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTRAP, SIGSYS};
constexpr std::size_t faultStackBytes = std::size_t{256} * 1024;
constexpr unsigned patienceSeconds = 2;

using Act = void (*)();

std::atomic<Act>& lastActOfProcess() {
  static constinit std::atomic<Act> act = nullptr;
  return act;
}

// Takes effect when the fault's handler returns.
void dieOnReturn(int fault) {
  signal(fault, SIG_DFL);
  raise(fault);
}

// What the fault has left half done, a lock of the allocator for example, may hold it up for ever.
void limitTheLastAct() {
  signal(SIGALRM, SIG_DFL);
  sigset_t alarms;
  sigemptyset(&alarms);
  sigaddset(&alarms, SIGALRM);
  pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
  alarm(patienceSeconds);
}

void meetFault(int fault) {
  static constinit std::atomic<bool> hasBegun = false;
  static constinit std::atomic<pthread_t> actor = pthread_t{};
  if (hasBegun.exchange(true)) {
    if (pthread_equal(actor, pthread_self())) return dieOnReturn(fault);
    for (;;) pause();
  }
  actor = pthread_self();
  limitTheLastAct();
  lastActOfProcess().load()();
  dieOnReturn(fault);
}

void setFaultStackAside() {
  alignas(std::max_align_t) static constinit std::array<std::byte, faultStackBytes> memory = {};
  stack_t stack = {};
  stack.ss_sp = memory.data();
  stack.ss_size = memory.size();
  sigaltstack(&stack, nullptr);
}

}  // namespace

void onFatalFault(void (*lastAct)()) {
  lastActOfProcess() = lastAct;
  setFaultStackAside();
  struct sigaction action = {};
  action.sa_handler = meetFault;
  action.sa_flags = SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (const int fault : fatalFaults) sigaction(fault, &action, nullptr);
}

}  // namespace posix
