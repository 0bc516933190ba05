#include "tests/support/fiber.h"

#include <cxxabi.h>
#include <sys/mman.h>
#include <ucontext.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FIBERS_UNDER_ADDRESS_SANITIZER
#elif __has_feature(thread_sanitizer)
#define FIBERS_UNDER_THREAD_SANITIZER
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define FIBERS_UNDER_ADDRESS_SANITIZER
#elif defined(__SANITIZE_THREAD__)
#define FIBERS_UNDER_THREAD_SANITIZER
#endif

#ifdef FIBERS_UNDER_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>
#endif
#ifdef FIBERS_UNDER_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif

namespace testing_support {

namespace {

constexpr std::size_t stackBytes = std::size_t{8} * 1024 * 1024;
constexpr std::size_t guardBytes = std::size_t{64} * 1024;

/// Memory for a stack, below which nothing may be written: what runs over the end is noticed.
void* newStack() {
  void* memory = mmap(nullptr, guardBytes + stackBytes, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_STACK, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  mprotect(memory, guardBytes, PROT_NONE);
  return static_cast<char*>(memory) + guardBytes;
}

/// The stacks that nobody uses now: most of the cost of a new one is that its pages are fresh.
std::vector<void*>& idleStacks() {
  static auto& stacks = *new std::vector<void*>;
  return stacks;
}

void* takeStack() {
  if (idleStacks().empty()) return newStack();
  void* stack = idleStacks().back();
  idleStacks().pop_back();
#ifdef FIBERS_UNDER_ADDRESS_SANITIZER
  __asan_unpoison_memory_region(stack, stackBytes);  // of the frames that the last body never left
#endif
  return stack;
}

}  // namespace

class Fiber::Implementation {
 public:
  explicit Implementation(std::function<void()> body) : body_(std::move(body)) {}
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  ~Implementation() {
    if (stack_ == nullptr) return;
    if (!isOver_) std::abort();  // its objects would never be destroyed
#ifdef FIBERS_UNDER_THREAD_SANITIZER
    __tsan_destroy_fiber(inside_.threadSanitizer);
#endif
    idleStacks().push_back(stack_);
  }

  void resume() {
    if (isOver_) std::abort();
    if (stack_ == nullptr) prepare();
    goFrom(outside_, inside_, false);
  }

  void suspend() { goFrom(inside_, outside_, false); }

  bool isOver() const { return isOver_; }

 private:
  /// The exceptions that are being handled and thrown are kept for each thread, and each course of
  /// action has its own. The C++ ABI lays these two members down.
  struct Exceptions {
    void* caught;
    unsigned int uncaught;
  };

  static Exceptions exchangeExceptions(const Exceptions& exceptions) {
    Exceptions before = {};
    std::memcpy(&before, abi::__cxa_get_globals(), sizeof before);
    std::memcpy(abi::__cxa_get_globals(), &exceptions, sizeof exceptions);
    return before;
  }

  /// A place at which something goes on later, and what the sanitizers want to know of it.
  struct Place {
    ucontext_t context = {};
    Exceptions exceptions = {};
    const void* stack = nullptr;  // its lowest byte
    std::size_t size = 0;
    void* fakeStack = nullptr;        // of the address sanitizer
    void* threadSanitizer = nullptr;  // what the thread sanitizer takes for the thread
  };

  /// Who goes on at a place asks this first of all, and says from where the turn came.
  static void arriveAt([[maybe_unused]] Place& place, [[maybe_unused]] Place& from) {
#ifdef FIBERS_UNDER_ADDRESS_SANITIZER
    __sanitizer_finish_switch_fiber(place.fakeStack, &from.stack, &from.size);
#endif
  }

  /// Goes on at the other place, and comes back when somebody goes on here. Who leaves for good
  /// does not come back.
  static void goFrom(Place& here, Place& there, [[maybe_unused]] bool forGood) {
    here.exceptions = exchangeExceptions(there.exceptions);
#ifdef FIBERS_UNDER_ADDRESS_SANITIZER
    __sanitizer_start_switch_fiber(forGood ? nullptr : &here.fakeStack, there.stack, there.size);
#endif
#ifdef FIBERS_UNDER_THREAD_SANITIZER
    here.threadSanitizer = __tsan_get_current_fiber();
    __tsan_switch_to_fiber(there.threadSanitizer, 0);
#endif
    swapcontext(&here.context, &there.context);
    arriveAt(here, there);
  }

  void prepare() {
    stack_ = takeStack();
    inside_.stack = stack_;
    inside_.size = stackBytes;
#ifdef FIBERS_UNDER_THREAD_SANITIZER
    inside_.threadSanitizer = __tsan_create_fiber(0);
#endif
    getcontext(&inside_.context);
    inside_.context.uc_stack.ss_sp = stack_;
    inside_.context.uc_stack.ss_size = stackBytes;
    makecontext(&inside_.context, begin, 0);
    beginning_ = this;
  }

  static void begin() { beginning_->run(); }

  void run() noexcept {
    arriveAt(inside_, outside_);
    body_();
    body_ = nullptr;
    isOver_ = true;
    goFrom(inside_, outside_, true);
    std::abort();  // nobody resumes it
  }

  // What begins on a new stack is given nothing but numbers: it finds itself here.
  static inline Implementation* beginning_ = nullptr;

  std::function<void()> body_;
  void* stack_ = nullptr;  // once it has begun
  Place inside_;           // where the body goes on
  Place outside_;          // where who resumed it goes on
  bool isOver_ = false;
};

Fiber::Fiber(std::function<void()> body)
    : implementation_(std::make_unique<Implementation>(std::move(body))) {}

Fiber::~Fiber() = default;

void Fiber::resume() { implementation_->resume(); }

void Fiber::suspend() { implementation_->suspend(); }

bool Fiber::isOver() const { return implementation_->isOver(); }

}  // namespace testing_support
