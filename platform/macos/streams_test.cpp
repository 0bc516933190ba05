#include "platform/streams.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

#include "tests/support/child_process.h"

namespace {

// What another thread finds when it wants to write a line.
bool isFreeForAnother() {
  bool isFree = false;
  std::thread([&] {
    isFree = streams::acquireOutputWithin(0);
    if (isFree) streams::releaseOutput();
  }).join();
  return isFree;
}

}  // namespace

TEST(streams, one_flow_at_a_time_has_the_right_to_write) {
  EXPECT_TRUE(isFreeForAnother());
  streams::acquireOutput();
  EXPECT_FALSE(isFreeForAnother());
  streams::releaseOutput();
  EXPECT_TRUE(isFreeForAnother());
}

TEST(streams, a_flow_that_waits_for_its_turn_gets_it_when_it_is_given_back) {
  bool written = false;
  streams::acquireOutput();
  std::thread waiting([&] {
    EXPECT_TRUE(streams::acquireOutputWithin(60'000'000));
    EXPECT_TRUE(written);
    streams::releaseOutput();
  });
  written = true;
  streams::releaseOutput();
  waiting.join();
}

TEST(streams, input_and_output_are_the_standard_ones) {
  const posix::Ending ending = posix::endingOf([](int out) {
    int ends[2] = {};
    if (pipe(ends) != 0 || dup2(ends[0], STDIN_FILENO) < 0 || dup2(out, STDOUT_FILENO) < 0)
      _exit(1);
    if (write(ends[1], "one\ntwo", 7) != 7) _exit(2);
    close(ends[1]);
    streams::writeOutput(streams::readLine().value_or("none"));
    streams::writeOutputWithin("," + streams::readAvailable() + ".", 60'000'000);
    streams::writeOutput(streams::readLine().value_or("none") + streams::readAvailable());
    _exit(0);
  });
  EXPECT_EQ(ending, (posix::Ending{.exitStatus = 0, .output = "one,two.none"}));
}

TEST(lockFile, holds_the_lock_as_long_as_the_process_lives) {
  const std::string path = testing::TempDir() + "driver-lock-" + std::to_string(getpid());
  const posix::Ending ending =
      posix::endingOf([&](int) { _exit(streams::lockFile(path) && !streams::lockFile(path)); });
  EXPECT_EQ(ending.exitStatus, 1);
  EXPECT_EQ(posix::endingOf([&](int) { _exit(streams::lockFile(path)); }).exitStatus, 1);
  EXPECT_FALSE(streams::lockFile(path + "/missing"));
  unlink(path.c_str());
}
