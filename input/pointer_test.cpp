#include "input/pointer.h"

#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

namespace {

using namespace testing_support;

constexpr const char* clickedDesk = R"(
    app Browser pid 40 frontmost
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
)";

TEST(click_that_is_told_to_end, lets_the_button_go_first) {
  TestMac mac(std::string(clickedDesk) + "    at 225ms signal 15\n", {}, Mode::direct);

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(run.status, 143);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved -1,-1 private: priming
   67 ms  post 41/7 left-down -1,-1 private: priming
   80 ms  post 41/7 left-up -1,-1 private: priming
  192 ms  post 41/7 moved 130,95 private: priming
  219 ms  post 41/7 left-down 130,95 private: press
  225 ms  happening signal 15
  232 ms  post 41/7 left-up 130,95 private: clicked AXWindow "Inbox", which does nothing
  244 ms  focus 41/7 take
)");
}

}  // namespace
