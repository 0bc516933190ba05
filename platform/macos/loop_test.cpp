#include "platform/loop.h"

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <utility>
#include <vector>

/// An executable of its own, in which clock, sleep and waits are played here: for all other
/// adapters the clock is one of the stand-ins.
namespace {

/// Ends what never ends.
struct Over {};

struct Played {
  std::vector<std::pair<long, long>> sleeps;  // asked for: seconds, nanoseconds
  int interruptions = 0;                      // of sleeps, by signals, each with 7 ns left
  int failure = 0;                            // of the sleep that comes next
  int turns = 0;                              // of the run loop
  int pauses = 0;
};

Played& played() {
  static Played played;
  return played;
}

class Loop : public testing::Test {
 protected:
  Loop() { played() = {}; }
};
using park = Loop;
using sleepMicroseconds = Loop;
using secondsSince1970 = Loop;
using suspend = Loop;
using uptimeNanoseconds = Loop;

constexpr int patience = 3;  // turns or pauses

void count(int& rounds) {
  if (++rounds == patience) throw Over();
}

double systemSeconds() {
  timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

}  // namespace

extern "C" {

uint64_t clock_gettime_nsec_np(clockid_t clock) { return clock == CLOCK_UPTIME_RAW ? 4'711 : 0; }

int nanosleep(const timespec* asked, timespec* left) {
  played().sleeps.emplace_back(asked->tv_sec, asked->tv_nsec);
  // One that comes to its end leaves `errno` as it was.
  if (const int failure = std::exchange(played().failure, 0); failure != 0) {
    errno = failure;
    return -1;
  }
  if (played().interruptions == 0) return 0;
  --played().interruptions;
  *left = {0, 7};
  errno = EINTR;
  return -1;
}

int pause() {
  count(played().pauses);
  return -1;
}

void CFRunLoopRun() { count(played().turns); }
}

TEST_F(uptimeNanoseconds, are_of_the_clock_that_stands_still_while_the_mac_sleeps) {
  EXPECT_EQ(loop::uptimeNanoseconds(), 4'711u);
}

TEST_F(secondsSince1970, are_those_of_the_users_clock) {
  const double before = systemSeconds();
  const double now = loop::secondsSince1970();
  EXPECT_LE(before, now);
  EXPECT_LE(now, systemSeconds());
}

TEST_F(sleepMicroseconds, asks_for_seconds_and_nanoseconds) {
  loop::sleepMicroseconds(2'500'000);
  EXPECT_EQ(played().sleeps, (std::vector<std::pair<long, long>>{{2, 500'000'000}}));
}

TEST_F(sleepMicroseconds, sleeps_on_after_signals) {
  played().interruptions = 2;
  loop::sleepMicroseconds(1);
  EXPECT_EQ(played().sleeps, (std::vector<std::pair<long, long>>{{0, 1'000}, {0, 7}, {0, 7}}));
}

TEST_F(sleepMicroseconds, gives_up_when_the_system_refuses) {
  played().failure = EINVAL;
  loop::sleepMicroseconds(1);
  EXPECT_EQ(played().sleeps.size(), 1u);
}

TEST_F(park, turns_the_run_loop_again_whenever_it_ends) {
  EXPECT_THROW(loop::park(), Over);
  EXPECT_EQ(played().turns, patience);
}

TEST_F(suspend, waits_on_after_signals) {
  EXPECT_THROW(loop::suspend(), Over);
  EXPECT_EQ(played().pauses, patience);
}
