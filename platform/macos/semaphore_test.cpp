#include "platform/loop.h"
#include "platform/macos/standins/dispatch.h"
#include "platform/macos/standins/fixture.h"

namespace {

class semaphore : public standins::AdapterTest {};

constexpr std::uint32_t second = 1'000'000;

}  // namespace

TEST_F(semaphore, counts_signals_and_each_wait_takes_one) {
  const loop::Semaphore counter = loop::makeSemaphore();
  loop::signal(counter);
  loop::signal(counter);
  EXPECT_TRUE(loop::waitWithin(counter, second));
  loop::wait(counter);
  EXPECT_FALSE(loop::waitWithin(counter, second));
}

TEST_F(semaphore, waits_as_long_as_it_is_told) {
  const loop::Semaphore counter = loop::makeSemaphore();
  EXPECT_FALSE(loop::waitWithin(counter, 450'000));
  EXPECT_EQ(standins::lastWaitNanoseconds(), 450'000'000U);
}
