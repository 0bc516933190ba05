#include "platform/posix/process.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "tests/support/child_process.h"

namespace {

using posix::Ending;
using posix::endingOf;

// Where an exit handler or a last act, a plain function, finds where to write to.
int output = -1;

// A process id that belonged to a process which has ended and been waited for.
pid_t endedProcess() {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  waitpid(child, nullptr, 0);
  return child;
}

void say(int descriptor, std::string_view text) {
  EXPECT_EQ(write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

// Whoever started the tests may have some ignored, as "nohup" does.
void notIgnored(std::initializer_list<int> numbers) {
  for (const int number : numbers) signal(number, SIG_DFL);
}

}  // namespace

TEST(environment, reads_a_variable_afresh) {
  setenv("DRIVER_TEST_VARIABLE", "one", 1);
  EXPECT_EQ(posix::environment("DRIVER_TEST_VARIABLE"), "one");
  setenv("DRIVER_TEST_VARIABLE", "", 1);
  EXPECT_EQ(posix::environment("DRIVER_TEST_VARIABLE"), "");
  unsetenv("DRIVER_TEST_VARIABLE");
  EXPECT_EQ(posix::environment("DRIVER_TEST_VARIABLE"), std::nullopt);
}

TEST(acceptsNullSignal, tells_a_running_process_from_one_that_has_gone) {
  EXPECT_TRUE(posix::acceptsNullSignal(getpid()));
  EXPECT_FALSE(posix::acceptsNullSignal(endedProcess()));
}

TEST(isIgnored, tells_what_the_process_was_started_with) {
  const Ending ending = endingOf([](int) {
    signal(SIGHUP, SIG_IGN);
    signal(SIGTERM, SIG_DFL);
    _exit(posix::isIgnored(SIGHUP) && !posix::isIgnored(SIGTERM) ? 0 : 1);
  });
  EXPECT_EQ(ending.exitStatus, 0);
}

TEST(onEndingSignal, calls_its_handler_with_the_first_and_lets_the_next_one_end_the_process) {
  // The same one again, or another.
  for (const int second : {SIGINT, SIGTERM}) {
    const Ending ending = endingOf([second](int out) {
      notIgnored({SIGTERM, SIGINT});
      posix::onEndingSignal({SIGTERM, SIGINT}, [out, second](int number) {
        say(out, number == SIGINT ? "int" : "other");
        kill(getpid(), second);
        for (;;) pause();
      });
      kill(getpid(), SIGINT);
      for (;;) pause();
    });
    EXPECT_EQ(ending, (Ending{.signal = second, .output = "int"}));
  }
}

TEST(onEndingSignal, calls_its_handler_whatever_the_other_threads_are_in) {
  const Ending ending = endingOf([](int out) {
    notIgnored({SIGTERM});
    std::mutex held;
    const std::lock_guard lock(held);
    posix::onEndingSignal({SIGTERM}, [out](int) {
      say(out, "told");
      posix::dieBySignal(SIGTERM);
    });
    // One that waits in the middle of something, and would take the signal.
    std::thread waiting([&] {
      kill(getpid(), SIGTERM);
      const std::lock_guard never(held);
    });
    waiting.join();
  });
  EXPECT_EQ(ending, (Ending{.signal = SIGTERM, .output = "told"}));
}

TEST(onEndingSignal, leaves_other_signals_as_they_are) {
  const Ending ending = endingOf([](int out) {
    notIgnored({SIGTERM, SIGHUP});
    posix::onEndingSignal({SIGTERM}, [out](int) { say(out, "told"); });
    kill(getpid(), SIGHUP);
    for (;;) pause();
  });
  EXPECT_EQ(ending, (Ending{.signal = SIGHUP, .output = ""}));
}

TEST(onEndingSignal, of_no_signals_leaves_all_as_they_are) {
  const Ending ending = endingOf([](int) {
    notIgnored({SIGTERM});
    posix::onEndingSignal({}, [](int) {});
    raise(SIGTERM);
  });
  EXPECT_EQ(ending.signal, SIGTERM);
}

TEST(ownPid, is_this_process) { EXPECT_EQ(posix::ownPid(), getpid()); }

TEST(currentDirectory, is_absolute_and_follows_a_change) {
  const std::filesystem::path before = std::filesystem::current_path();
  EXPECT_EQ(posix::currentDirectory(), before.string());
  std::filesystem::current_path("/");
  EXPECT_EQ(posix::currentDirectory(), "/");
  std::filesystem::current_path(before);
}

TEST(currentDirectory, is_empty_when_it_has_gone) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::string pattern = testing::TempDir() + "gone-XXXXXX";
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  std::filesystem::current_path(pattern);
  std::filesystem::remove(pattern);
  EXPECT_EQ(posix::currentDirectory(), "");
  std::filesystem::current_path(before);
}

TEST(ignoreBrokenPipes, a_write_without_a_reader_fails_and_the_process_goes_on) {
  EXPECT_EQ(endingOf([](int) {
              posix::ignoreBrokenPipes();
              int ends[2] = {};
              if (pipe(ends) != 0) _exit(1);
              close(ends[0]);
              _exit(write(ends[1], "x", 1) < 0 ? 0 : 2);
            }),
            (Ending{.exitStatus = 0, .output = ""}));
}

TEST(ignoreStops, the_process_goes_on_when_a_terminal_would_stop_it) {
  for (const int stop : {SIGTSTP, SIGTTIN, SIGTTOU}) {
    EXPECT_EQ(endingOf([&](int) {
                posix::ignoreStops();
                _exit(signal(stop, SIG_DFL) == SIG_IGN ? 0 : 1);
              }),
              (Ending{.exitStatus = 0, .output = ""}));
  }
}

TEST(dieBySignal, ends_the_process_by_that_signal_without_exit_handlers) {
  EXPECT_EQ(endingOf([](int out) {
              output = out;
              std::atexit([] { _exit(write(output, "exit handler", 12) == 12 ? 1 : 2); });
              posix::dieBySignal(SIGTERM);
            }),
            (Ending{.signal = SIGTERM, .output = ""}));
}

TEST(dieBySignal, does_not_mind_that_the_signal_is_ignored_or_blocked) {
  EXPECT_EQ(endingOf([](int) {
              signal(SIGINT, SIG_IGN);
              sigset_t all;
              sigfillset(&all);
              pthread_sigmask(SIG_BLOCK, &all, nullptr);
              raise(SIGHUP);
              posix::dieBySignal(SIGINT);
            }),
            (Ending{.signal = SIGINT, .output = ""}));
}

TEST(exit, ends_the_process_with_the_status) {
  EXPECT_EQ(endingOf([](int) { posix::exit(3); }).exitStatus, 3);
}

TEST(exit, runs_each_handler_once_the_newest_first) {
  EXPECT_EQ(endingOf([](int out) {
              posix::onExit([out] { say(out, "first "); });
              posix::onExit([out] { say(out, "second "); });
              posix::exit(3);
            }),
            (Ending{.exitStatus = 3, .output = "second first "}));
}

TEST(exit, runs_handlers_on_the_thread_that_exits) {
  EXPECT_EQ(endingOf([](int out) {
              std::thread([out] {
                const std::thread::id exiting = std::this_thread::get_id();
                posix::onExit([out, exiting] {
                  say(out, std::this_thread::get_id() == exiting ? "same" : "other");
                });
                posix::exit(3);
              }).join();
            }),
            (Ending{.exitStatus = 3, .output = "same"}));
}

TEST(exit, may_come_from_a_handler_and_ends_the_process_there) {
  EXPECT_EQ(endingOf([](int out) {
              posix::onExit([out] { say(out, "never"); });
              posix::onExit([] { posix::exit(4); });
              posix::exit(3);
            }),
            (Ending{.exitStatus = 4, .output = ""}));
}

TEST(exit, may_come_from_two_threads_at_once) {
  EXPECT_EQ(endingOf([](int) {
              std::thread([] { posix::exit(3); }).detach();
              posix::exit(3);
            }).exitStatus,
            3);
}

namespace {

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
                           SIGSYS, SIGILL, SIGBUS, SIGFPE, SIGIO, SIGPWR, SIGSTKFLT}) {
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
