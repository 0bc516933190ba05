#include <pthread.h>

#include <cstddef>
#include <future>

#include "platform/loop.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/pools.h"

namespace {

class Task : public standins::AdapterTest {};
using doRound = Task;
using startTask = Task;

// Tells when the thread that has used it ends.
struct End {
  ~End() {
    if (tell) tell();
  }
  std::function<void()> tell;
};
thread_local End end;

}  // namespace

TEST_F(doRound, frees_what_was_set_aside) {
  bool isGone = false;
  loop::doRound([&] {
    standins::autoreleaseTelling([&] { isGone = true; });
    EXPECT_FALSE(isGone);
  });
  EXPECT_TRUE(isGone);
}

TEST_F(startTask, is_another_thread_and_frees_what_was_set_aside) {
  bool isGone = false;
  std::promise<pthread_t> ended;
  loop::startTask([&] {
    end.tell = [&] { ended.set_value(pthread_self()); };
    standins::autoreleaseTelling([&] { isGone = true; });
  });
  EXPECT_FALSE(pthread_equal(ended.get_future().get(), pthread_self()));
  EXPECT_TRUE(isGone);
}

TEST_F(startTask, has_the_stack_of_a_main_thread) {
  std::promise<std::size_t> told;
  loop::startTask([&] {
    pthread_attr_t attributes;
    std::size_t bytes = 0;
    pthread_getattr_np(pthread_self(), &attributes);
    pthread_attr_getstacksize(&attributes, &bytes);
    pthread_attr_destroy(&attributes);
    told.set_value(bytes);
  });
  EXPECT_EQ(told.get_future().get(), 8'388'608U);
}
