#include "simulator/scheduler.h"

#include <gtest/gtest.h>

#include <string>

namespace simulator {
namespace {

using Kind = Scheduler::Kind;
using Time = Scheduler::Time;

/// The flow whose wait ends; "nobody" when none does.
std::string woken(Scheduler& scheduler, Microseconds now) {
  const auto flow = scheduler.wake(now);
  return flow ? std::to_string(*flow) : "nobody";
}

TEST(scheduler, in_real_time_a_wait_ends_when_it_is_due_whoever_runs) {
  Scheduler scheduler(Time::real);
  const auto first = scheduler.join(Kind::process);
  const auto second = scheduler.join(Kind::process);
  scheduler.wait(first, 300);
  scheduler.wait(second, 200);

  EXPECT_EQ(woken(scheduler, 199), "nobody");
  EXPECT_EQ(woken(scheduler, 300), "2");
  EXPECT_EQ(woken(scheduler, 300), "1");
  EXPECT_EQ(woken(scheduler, 300), "nobody");
}

TEST(scheduler, in_virtual_time_one_process_runs_at_a_time) {
  Scheduler scheduler(Time::virtualTime);
  const auto first = scheduler.join(Kind::process);
  const auto second = scheduler.join(Kind::process);
  scheduler.wait(first, 100);
  scheduler.wait(second, 100);

  EXPECT_EQ(woken(scheduler, 100), "1");
  EXPECT_EQ(woken(scheduler, 100), "nobody");
  scheduler.wait(first, 250);
  EXPECT_EQ(woken(scheduler, 100), "2");
}

TEST(scheduler, equal_times_go_by_the_order_of_joining_but_for_a_preferred_flow) {
  Scheduler scheduler(Time::virtualTime);
  for (int i = 0; i < 3; ++i) scheduler.wait(scheduler.join(Kind::watcher), 100);

  EXPECT_EQ(scheduler.wake(100, 3), 3U);
  EXPECT_EQ(scheduler.wake(100, 3), 1U);
  EXPECT_EQ(scheduler.wake(99, 2), std::nullopt);
}

TEST(scheduler, a_watcher_holds_nobody_up) {
  Scheduler scheduler(Time::virtualTime);
  const auto watcher = scheduler.join(Kind::watcher);
  const auto process = scheduler.join(Kind::process);
  scheduler.wait(watcher, 100);
  scheduler.wait(process, 100);

  EXPECT_EQ(woken(scheduler, 100), "1");
  EXPECT_EQ(woken(scheduler, 100), "2");
}

TEST(scheduler, a_process_that_is_about_to_arrive_or_is_outside_runs_or_does_not) {
  Scheduler scheduler(Time::virtualTime);
  const auto arriving = scheduler.join(Kind::process);
  const auto other = scheduler.join(Kind::process);
  scheduler.run(arriving);
  scheduler.wait(other, 0);
  EXPECT_FALSE(scheduler.mayWake());

  scheduler.goOutside(arriving);
  EXPECT_TRUE(scheduler.mayWake());
  EXPECT_EQ(woken(scheduler, 0), "2");
}

TEST(scheduler, a_deadline_of_a_blocked_flow_is_due_like_any_wait) {
  Scheduler scheduler(Time::virtualTime);
  const auto first = scheduler.join(Kind::process);
  const auto second = scheduler.join(Kind::process);
  scheduler.wait(first, 300);
  scheduler.block(second, {});
  EXPECT_EQ(scheduler.nextDue(), 300);

  scheduler.block(second, {200});
  EXPECT_EQ(scheduler.nextDue(), 200);
  EXPECT_EQ(woken(scheduler, 200), "nobody");
  scheduler.leave(second);
  EXPECT_EQ(scheduler.nextDue(), 300);
}

TEST(scheduler, a_process_that_goes_gives_up_its_turn_and_its_wait) {
  Scheduler scheduler(Time::virtualTime);
  const auto running = scheduler.join(Kind::process);
  const auto waiting = scheduler.join(Kind::process);
  const auto other = scheduler.join(Kind::process);
  scheduler.wait(running, 0);
  scheduler.wait(waiting, 100);
  scheduler.wait(other, 200);
  EXPECT_EQ(woken(scheduler, 0), "1");

  scheduler.leave(waiting);
  EXPECT_EQ(woken(scheduler, 200), "nobody");
  scheduler.leave(running);
  scheduler.leave(running);
  EXPECT_EQ(scheduler.nextDue(), 200);
  EXPECT_EQ(woken(scheduler, 200), "3");
}

TEST(scheduler, without_a_wait_nobody_is_woken) {
  Scheduler scheduler(Time::virtualTime);
  scheduler.join(Kind::process);

  EXPECT_EQ(woken(scheduler, 0), "nobody");
  EXPECT_EQ(scheduler.nextDue(), std::nullopt);
}

}  // namespace
}  // namespace simulator
