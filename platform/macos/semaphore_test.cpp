#include "platform/loop.h"
#include "platform/macos/standins/dispatch.h"
#include "platform/macos/standins/fixture.h"

namespace {

class semaphore : public standins::AdapterTest {
 protected:
  loop::Semaphore counter_ = loop::makeSemaphore();
};

constexpr std::uint32_t second = 1'000'000;

}  // namespace

TEST_F(semaphore, counts_signals_and_each_wait_takes_one) {
  loop::signal(counter_);
  loop::signal(counter_);
  EXPECT_TRUE(loop::waitWithin(counter_, second));
  loop::wait(counter_);
  EXPECT_FALSE(loop::waitWithin(counter_, second));
}

TEST_F(semaphore, waits_as_long_as_it_is_told) {
  const std::uint64_t since = standins::now();
  EXPECT_FALSE(loop::waitWithin(counter_, 450'000));
  EXPECT_EQ(standins::now() - since, 450'000'000U);
}

TEST_F(semaphore, ends_a_wait_when_it_is_signalled) {
  const std::uint64_t since = standins::now();
  standins::later(3'000, [this] { loop::signal(counter_); });
  loop::wait(counter_);
  EXPECT_EQ(standins::now() - since, 3'000U);
}
