#include "platform/posix/process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace {

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
