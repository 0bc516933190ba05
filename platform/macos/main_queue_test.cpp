#include <vector>

#include "platform/loop.h"
#include "platform/macos/standins/dispatch.h"
#include "platform/macos/standins/fixture.h"

namespace {

class MainQueue : public standins::AdapterTest {};
using postToMain = MainQueue;
using scheduleOnMain = MainQueue;
using goRounds = MainQueue;

constexpr std::uint32_t second = 1'000'000;
constexpr std::uint64_t secondNanoseconds = 1'000'000'000;

}  // namespace

TEST_F(postToMain, has_work_done_in_order_when_the_queue_is_served) {
  std::vector<int> done;
  loop::postToMain([&] { done.push_back(1); });
  loop::postToMain([&] { done.push_back(2); });
  EXPECT_EQ(done, std::vector<int>{});
  standins::serveMainQueue();
  EXPECT_EQ(done, (std::vector<int>{1, 2}));
  standins::serveMainQueue();
  EXPECT_EQ(done.size(), 2u);
}

TEST_F(scheduleOnMain, does_work_at_each_interval_and_not_more_often_than_asked) {
  const std::size_t before = standins::sources();
  int done = 0;
  loop::scheduleOnMain(second, 2, [&] { ++done; });
  standins::passNanoseconds(secondNanoseconds - 1);
  standins::serveMainQueue();
  EXPECT_EQ(done, 0);
  standins::passNanoseconds(1);
  standins::serveMainQueue();
  EXPECT_EQ(done, 1);
  EXPECT_EQ(standins::sources(), before + 1);
  standins::passNanoseconds(secondNanoseconds);
  standins::serveMainQueue();
  EXPECT_EQ(done, 2);
  EXPECT_EQ(standins::sources(), before);
  standins::passNanoseconds(5 * secondNanoseconds);
  standins::serveMainQueue();
  EXPECT_EQ(done, 2);
}

TEST_F(scheduleOnMain, makes_up_for_what_a_busy_main_thread_has_missed) {
  int done = 0;
  loop::scheduleOnMain(second, 4, [&] { ++done; });
  standins::passNanoseconds(3 * secondNanoseconds);
  standins::serveMainQueue();
  EXPECT_EQ(done, 3);
  standins::passNanoseconds(9 * secondNanoseconds);
  standins::serveMainQueue();
  EXPECT_EQ(done, 4);
}

TEST_F(scheduleOnMain, without_an_interval_does_its_work_at_once) {
  int done = 0;
  loop::scheduleOnMain(0, 1, [&] { ++done; });
  standins::passNanoseconds(1);
  standins::serveMainQueue();
  EXPECT_EQ(done, 1);
}

TEST_F(scheduleOnMain, of_nothing_makes_no_timer) {
  const std::size_t before = standins::sources();
  loop::scheduleOnMain(second, 0, [] {});
  loop::scheduleOnMain(second, -1, [] {});
  EXPECT_EQ(standins::sources(), before);
}

TEST_F(goRounds, makes_a_round_at_each_interval_and_makes_up_for_none) {
  static int rounds = 0;  // the timer outlives the test
  loop::goRounds(second, [&] { ++rounds; });
  EXPECT_FALSE(loop::awaitRound(second));
  standins::passNanoseconds(secondNanoseconds);
  standins::serveMainQueue();
  EXPECT_EQ(rounds, 1);
  EXPECT_TRUE(loop::awaitRound(second));
  EXPECT_FALSE(loop::awaitRound(second));
  standins::passNanoseconds(3 * secondNanoseconds);
  standins::serveMainQueue();
  EXPECT_EQ(rounds, 2);
  EXPECT_TRUE(loop::awaitRound(second));
}
