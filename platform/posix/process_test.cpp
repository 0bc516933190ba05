#include "platform/posix/process.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/posix/child_process.h"

namespace {

using posix::Ending;
using posix::endingOf;

// Where an exit handler, a plain function, finds where to write to.
int output = -1;

// A process id that belonged to a process which has ended and been waited for.
pid_t endedProcess() {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  waitpid(child, nullptr, 0);
  return child;
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
