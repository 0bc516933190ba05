#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

namespace click_test {

using namespace testing_support;

constexpr const char* notes = R"(
    display 1 1440x900 scale 2
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 120,130 size 700x400 value "hello "
)";

TEST(bg_click, primes_clicks_and_gives_focus_back) {
  TestMac mac(notes);

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), success(R"({"changed":true,"ok":true,"via":"background","window":7})"));
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved -1,-1 private: priming
   67 ms  post 41/7 left-down -1,-1 private: priming
   80 ms  post 41/7 left-up -1,-1 private: priming
  192 ms  post 41/7 moved 130,95 private: priming
  219 ms  post 41/7 left-down 130,95 private: press
  232 ms  post 41/7 left-up 130,95 private: pressed AXButton "Send"
  344 ms  focus 41/7 take
)");
  EXPECT_EQ(run.elapsed, 584'000);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello sent");
}

}  // namespace click_test
