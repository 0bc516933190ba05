#include "simulator/chance.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "tests/support/simulated_run.h"

namespace simulator {

namespace {

using namespace testing_support;

constexpr const char* desk = R"(
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400 value "hello"
)";

Result readingOf(const std::string& seed) {
  TestMac mac((seed.empty() ? "" : "    " + seed) + desk);
  return mac.driver("ax-at Notes 130 140");
}

TEST(Random, gives_the_same_numbers_everywhere) {
  Random random(1);
  EXPECT_EQ(random.next(), 0x910A2DEC89025CC1U);
  EXPECT_EQ(random.next(), 0xBEEB8DA1658EEC67U);
  EXPECT_EQ(random.between(-3, 3), -2);
}

TEST(chanceDelay, is_the_same_for_the_same_seed) {
  EXPECT_EQ(readingOf("seed 7").elapsed, readingOf("seed 7").elapsed);
}

TEST(chanceDelay, is_another_for_another_seed) {
  EXPECT_NE(readingOf("seed 7").elapsed, readingOf("seed 8").elapsed);
}

TEST(chanceDelay, is_nothing_without_a_seed) { EXPECT_EQ(readingOf("").elapsed, 0); }

TEST(chanceDelay, changes_no_reply) { EXPECT_EQ(seen(readingOf("seed 7")), seen(readingOf(""))); }

TEST(chanceDelay, is_nothing_for_what_a_process_does_by_itself) {
  Random random(1);
  EXPECT_EQ(chanceDelay(random, platform::Function::uptime), 0);
}

}  // namespace

}  // namespace simulator
