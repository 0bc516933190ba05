#include <dlfcn.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

// Preloaded into a process, this makes memory run short once the process has begun to write to its
// standard output: the allocation whose number the variable FAILING_ALLOCATION gives (the first
// after that is 1) fails and, when "+" follows it, all later ones, until the process gives up and
// aborts. The first one that fails says so on standard error.

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
}

namespace {

constinit std::atomic<bool> isCounting = false;
constinit std::atomic<long> allocations = 0;
constinit std::atomic<long> failing = 0;
constinit std::atomic<bool> goesOn = false;

__attribute__((constructor)) void readVariable() {
  const char* value = std::getenv("FAILING_ALLOCATION");
  if (value == nullptr) return;
  char* end = nullptr;
  failing = std::strtol(value, &end, 10);
  goesOn = *end == '+';
}

bool fails() {
  if (!isCounting) return false;
  const long number = ++allocations;
  if (number != failing && !(goesOn && number > failing)) return false;
  if (number == failing) syscall(SYS_write, STDERR_FILENO, "short of memory\n", 16);
  errno = ENOMEM;
  return true;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) { return fails() ? nullptr : __libc_malloc(size); }

void* calloc(std::size_t count, std::size_t size) {
  return fails() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
  return fails() ? nullptr : __libc_realloc(block, size);
}

ssize_t write(int descriptor, const void* bytes, std::size_t count) {
  const ssize_t written = syscall(SYS_write, descriptor, bytes, count);
  if (descriptor == STDOUT_FILENO && failing > 0) isCounting = true;
  return written;
}

void abort() noexcept {
  isCounting = false;
  const auto next = reinterpret_cast<void (*)()>(dlsym(RTLD_NEXT, "abort"));
  next();
  _exit(128 + SIGABRT);
}

}  // extern "C"
