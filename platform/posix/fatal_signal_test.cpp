#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

#include "platform/posix/child_process.h"
#include "platform/posix/process.h"

namespace {

using posix::Ending;
using posix::endingOf;

// A last act is a plain function, so it finds where to write to here.
int output = -1;

void say(std::string_view text) {
  if (write(output, text.data(), text.size()) < 0) _exit(98);
}

void sayLastWords() { say("last words"); }

template <class Fault>
Ending endingOfFault(void (*lastAct)(), Fault fault) {
  return endingOf([&](int out) {
    output = out;
    posix::onFatalSignal(lastAct);
    fault();
  });
}

// Writes where nothing may be written.
void badAccess() {
  void* page = mmap(nullptr, 1, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  *static_cast<volatile char*>(page) = 1;
}

// Volatile, so that the compiler does not see that it never ends.
volatile bool goesOn = true;

int fillTheStack(int depth) {
  volatile char room[1024] = {};
  room[0] = static_cast<char>(depth);
  return goesOn ? fillTheStack(depth + 1) + room[0] : depth;
}

}  // namespace

TEST(onFatalSignal, the_last_act_precedes_the_death_by_the_same_signal) {
  EXPECT_EQ(endingOfFault(sayLastWords, [] { std::abort(); }),
            (Ending{.signal = SIGABRT, .output = "last words"}));
  EXPECT_EQ(endingOfFault(sayLastWords, badAccess),
            (Ending{.signal = SIGSEGV, .output = "last words"}));
  EXPECT_EQ(endingOfFault(sayLastWords, [] { raise(SIGTRAP); }),
            (Ending{.signal = SIGTRAP, .output = "last words"}));
}

TEST(onFatalSignal, that_somebody_else_sends_is_met) {
  for (const int number : {SIGQUIT, SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF, SIGALRM,
                           SIGSYS, SIGILL, SIGBUS, SIGFPE}) {
    EXPECT_EQ(endingOfFault(sayLastWords, [&] { kill(getpid(), number); }),
              (Ending{.signal = number, .output = "last words"}));
  }
}

TEST(onFatalSignal, leaves_the_signals_that_have_handlers_of_their_own_alone) {
  for (const int number : {SIGHUP, SIGINT, SIGTERM, SIGPIPE}) {
    // Whoever started the tests may have it ignored, as "nohup" does.
    EXPECT_EQ(endingOf([&](int out) {
                output = out;
                signal(number, SIG_DFL);
                posix::onFatalSignal(sayLastWords);
                raise(number);
              }),
              (Ending{.signal = number, .output = ""}));
  }
}

TEST(onFatalSignal, a_full_stack_is_met_on_another) {
  EXPECT_EQ(endingOfFault(sayLastWords, [] { fillTheStack(0); }),
            (Ending{.signal = SIGSEGV, .output = "last words"}));
}

TEST(onFatalSignal, a_fault_of_another_thread_is_met) {
  EXPECT_EQ(endingOfFault(sayLastWords, [] { std::thread(badAccess).join(); }),
            (Ending{.signal = SIGSEGV, .output = "last words"}));
}

TEST(onFatalSignal, a_fault_within_the_last_act_ends_the_process_by_itself) {
  EXPECT_EQ(endingOfFault(
                [] {
                  say("last words");
                  badAccess();
                },
                [] { std::abort(); }),
            (Ending{.signal = SIGSEGV, .output = "last words"}));
}

TEST(onFatalSignal, the_last_act_has_a_time_limit) {
  EXPECT_EQ(endingOfFault([] { say(std::to_string(alarm(0))); }, badAccess),
            (Ending{.signal = SIGSEGV, .output = "2"}));
}

TEST(onFatalSignal, nothing_happens_without_a_fault) {
  EXPECT_EQ(endingOfFault(sayLastWords, [] { _exit(0); }), (Ending{.exitStatus = 0, .output = ""}));
}
