#include "main/told_to_end.h"

#include <gtest/gtest.h>

#include "main/ending.h"
#include "platform/loop.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

TEST(endWhenTold, waits_100_milliseconds_for_an_act) {
  TestMac mac("    app Notes pid 41 frontmost\n    at 10ms signal 15\n", {}, Mode::direct);
  const Result run = runInside(mac, [] {
    endWhenTold();
    const Act act;
    loop::sleepMicroseconds(500'000);
  });
  EXPECT_EQ(seen(run), "143 {\"error\":\"the run was told to end by a signal\",\"ok\":false}\n");
  EXPECT_EQ(run.elapsed, 110'000);
}

TEST(endWhenTold, gives_its_line_50_milliseconds) {
  TestMac mac("    app Notes pid 41 frontmost\n    at 5ms stall output\n    at 10ms signal 15\n",
              {}, Mode::direct);
  const Result run = runInside(mac, [] {
    endWhenTold();
    loop::sleepMicroseconds(500'000);
  });
  EXPECT_EQ(seen(run), "143 ");
  EXPECT_EQ(run.elapsed, 60'000);
}

}  // namespace
}  // namespace driver
