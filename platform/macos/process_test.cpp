#include "platform/process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

// The exit status of a process that does this.
template <class Work>
int exitStatusOf(Work work) {
  // Else the child writes once more what is still buffered.
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(99);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

TEST(process, exit_ends_the_process_with_the_status) {
  EXPECT_EQ(exitStatusOf([] { process::exit(3); }), 3);
}

TEST(process, exit_may_come_from_an_exit_handler) {
  EXPECT_EQ(exitStatusOf([] {
              std::atexit([] { process::exit(4); });
              process::exit(3);
            }),
            4);
}

TEST(process, exit_may_come_from_two_threads_at_once) {
  EXPECT_EQ(exitStatusOf([] {
              std::thread([] { process::exit(3); }).detach();
              process::exit(3);
            }),
            3);
}
