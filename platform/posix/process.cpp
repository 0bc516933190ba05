#include "platform/posix/process.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace posix {

namespace {

// Shells say so of a process that has died by a signal.
constexpr int signalExitStatus = 128;

/// From now on the signal does what it does by default, even if it was held back.
void restoreDefault(int number) {
  signal(number, SIG_DFL);
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, number);
  pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
}

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

bool isIgnored(int number) {
  struct sigaction action = {};
  return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

namespace {

/// Signals that a thread waits for.
struct Awaited {
  std::vector<int> numbers;
  sigset_t set = {};
  std::function<void(int)> handler;
};

void* awaitEnding(void* context) {
  const std::unique_ptr<Awaited> awaited(static_cast<Awaited*>(context));
  int first = 0;
  while (sigwait(&awaited->set, &first) != 0) {
  }
  // This thread alone lets the next one through, which then ends the process.
  for (const int number : awaited->numbers) restoreDefault(number);
  awaited->handler(first);
  return nullptr;
}

}  // namespace

void onEndingSignal(const std::vector<int>& numbers, std::function<void(int)> handler) {
  if (numbers.empty()) return;
  auto awaited = std::make_unique<Awaited>(Awaited{numbers, {}, std::move(handler)});
  sigemptyset(&awaited->set);
  for (const int number : numbers) sigaddset(&awaited->set, number);
  const sigset_t set = awaited->set;
  // By waiting, since a handler may call next to nothing; and held back everywhere, so that no
  // other thread gets them.
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  pthread_t thread = {};
  if (pthread_create(&thread, nullptr, awaitEnding, awaited.get()) != 0) {
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    return;
  }
  static_cast<void>(awaited.release());  // it is the thread's now
  pthread_detach(thread);
}

void dieBySignal(int number) {
  restoreDefault(number);
  raise(number);
  _exit(signalExitStatus + number);  // should the system not have delivered it
}

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

// One at a time, and not from a copy: a handler may end the process, and then it stays with those
// that have run.
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

namespace {

// Faults of the process itself, and signals that others may send it.
constexpr std::array fatalSignals = {
    SIGSEGV, SIGBUS,  SIGILL,    SIGFPE,  SIGABRT,   SIGTRAP, SIGSYS,  SIGQUIT,
    SIGUSR1, SIGUSR2, SIGXCPU,   SIGXFSZ, SIGVTALRM, SIGPROF, SIGALRM,
#ifdef SIGEMT
    SIGEMT,  // on a Mac
#endif
#ifdef __linux__
    SIGIO,   SIGPWR,  SIGSTKFLT,  // which on a Mac are ignored, or are none
#endif
};
// The last act writes a line and asks the system to lock, which takes a few frames of ours and an
// unknown number of the system's.
constexpr std::size_t lastStackBytes = std::size_t{256} * 1024;
constexpr unsigned patienceSeconds = 2;  // the system takes a part of one to lock

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
  restoreDefault(SIGALRM);
  alarm(patienceSeconds);
}

void meetFatalSignal(int number) {
  static constinit std::atomic<bool> hasBegun = false;
  static constinit std::atomic<pthread_t> actor = pthread_t{};
  if (hasBegun.exchange(true)) {
    // A fault within the last act: there is nothing left to try.
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
