#include "simulator/companion/scheduler.h"

#include <gtest/gtest.h>

#include <string>

namespace companion {
namespace {

using Kind = Scheduler::Kind;
using Time = Scheduler::Time;

/// The next wait that ends, as "FLOW at DUE"; "nobody" when none does.
std::string woken(Scheduler& scheduler, Microseconds now) {
  const auto wake = scheduler.wake(now);
  if (!wake) return "nobody";
  return std::to_string(wake->flow) + " at " + std::to_string(wake->due);
}

TEST(scheduler, in_real_time_a_wait_ends_when_it_is_due) {
  Scheduler scheduler(Time::real);
  const auto first = scheduler.join(Kind::process);
  const auto second = scheduler.join(Kind::process);
  scheduler.wait(first, 300);
  scheduler.wait(second, 200);

  EXPECT_EQ(woken(scheduler, 199), "nobody");
  EXPECT_EQ(woken(scheduler, 300), "2 at 200");
  EXPECT_EQ(woken(scheduler, 300), "1 at 300");
  EXPECT_EQ(woken(scheduler, 300), "nobody");
}

TEST(scheduler, in_virtual_time_the_earliest_wait_ends_although_it_lies_ahead) {
  Scheduler scheduler(Time::virtualTime);
  const auto first = scheduler.join(Kind::process);
  const auto second = scheduler.join(Kind::process);
  scheduler.wait(first, 300);
  scheduler.wait(second, 200);

  EXPECT_EQ(woken(scheduler, 0), "2 at 200");
}

TEST(scheduler, virtual_time_stands_still_while_a_process_runs) {
  Scheduler scheduler(Time::virtualTime);
  const auto first = scheduler.join(Kind::process);
  const auto second = scheduler.join(Kind::process);
  scheduler.wait(first, 100);
  scheduler.wait(second, 200);

  EXPECT_EQ(woken(scheduler, 0), "1 at 100");
  EXPECT_EQ(woken(scheduler, 100), "nobody");
  scheduler.wait(first, 150);
  EXPECT_EQ(woken(scheduler, 100), "1 at 150");
  scheduler.wait(first, 250);
  EXPECT_EQ(woken(scheduler, 150), "2 at 200");
}

TEST(scheduler, equal_times_go_by_the_order_of_joining) {
  Scheduler scheduler(Time::virtualTime);
  const auto first = scheduler.join(Kind::watcher);
  const auto second = scheduler.join(Kind::watcher);
  scheduler.wait(second, 100);
  scheduler.wait(first, 100);

  EXPECT_EQ(woken(scheduler, 0), "1 at 100");
  EXPECT_EQ(woken(scheduler, 100), "2 at 100");
}

TEST(scheduler, a_watcher_holds_nobody_up) {
  Scheduler scheduler(Time::virtualTime);
  const auto watcher = scheduler.join(Kind::watcher);
  const auto process = scheduler.join(Kind::process);
  scheduler.wait(watcher, 100);
  scheduler.wait(process, 200);

  EXPECT_EQ(woken(scheduler, 0), "1 at 100");
  EXPECT_EQ(woken(scheduler, 100), "2 at 200");
}

TEST(scheduler, a_process_that_goes_gives_up_its_turn_and_its_wait) {
  Scheduler scheduler(Time::virtualTime);
  const auto running = scheduler.join(Kind::process);
  const auto waiting = scheduler.join(Kind::process);
  const auto other = scheduler.join(Kind::process);
  scheduler.wait(running, 0);
  scheduler.wait(waiting, 100);
  scheduler.wait(other, 200);
  EXPECT_EQ(woken(scheduler, 0), "1 at 0");

  scheduler.leave(waiting);
  EXPECT_EQ(woken(scheduler, 0), "nobody");
  scheduler.leave(running);
  scheduler.leave(running);
  EXPECT_EQ(scheduler.nextDue(), 200);
  EXPECT_EQ(woken(scheduler, 0), "3 at 200");
}

TEST(scheduler, without_a_wait_nobody_is_woken) {
  Scheduler scheduler(Time::virtualTime);
  scheduler.join(Kind::process);

  EXPECT_EQ(woken(scheduler, 0), "nobody");
  EXPECT_EQ(scheduler.nextDue(), std::nullopt);
}

}  // namespace
}  // namespace companion
