#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

namespace focus_release_test {

using namespace testing_support;

constexpr const char* desk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

constexpr const char* done = R"({"ok":true})";

TEST(focus_release, takes_focus_back_from_a_process_in_the_background) {
  TestMac mac(desk);
  const Result run = mac.driver("focus-release 41 7");
  EXPECT_EQ(seen(run), success(done));
  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 take\n");
  EXPECT_EQ(run.elapsed, 40'000);
}

TEST(focus_release, leaves_focus_to_the_process_in_front) {
  TestMac mac(desk);
  const Result run = mac.driver("focus-release 40 5");
  EXPECT_EQ(seen(run), success(done));
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(focus_release, posts_nothing_when_the_foreground_is_unknown) {
  TestMac mac(desk, {"private.front-process 1 error -600"});
  const Result run = mac.driver("focus-release 41 7");
  EXPECT_EQ(seen(run), success(done));
  EXPECT_EQ(run.effects, "");
}

TEST(focus_release, does_not_mind_whether_the_record_is_taken) {
  for (const char* fault :
       {"private.post-record 1 error -600", "private.process-for-pid 1 error -600"}) {
    TestMac mac(desk, {fault});
    EXPECT_EQ(seen(mac.driver("focus-release 41 7")), success(done)) << fault;
  }
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("focus-release 99 7")), success(done));
}

TEST(focus_release, works_while_the_screen_is_locked) {
  TestMac mac(std::string(desk) + "    session locked\n");
  const Result run = mac.driver("focus-release 41 7");
  EXPECT_EQ(seen(run), success(done));
  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 take\n");
}

TEST(focus_release, does_not_ask_whether_focus_is_held) {
  TestMac mac(desk);
  const Result run = mac.driver("focus-release 41 7", {{"CU_FOCUS_PID", "41"}});
  EXPECT_EQ(run.effects, "    0 ms  focus 41/7 take\n");
}

TEST(focus_release, takes_any_unsigned_window) {
  TestMac mac(desk);
  EXPECT_EQ(mac.driver("focus-release 41 4294967295").effects,
            "    0 ms  focus 41/4294967295 take LOST: no such window of the application\n");
  EXPECT_EQ(mac.driver("focus-release 41 0").effects,
            "    0 ms  focus 41/0 take LOST: no such window of the application\n");
}

TEST(focus_release, reads_signs_and_leading_zeros) {
  TestMac mac(desk);
  EXPECT_EQ(mac.driver("focus-release +41 +7").effects, "    0 ms  focus 41/7 take\n");
  EXPECT_EQ(mac.driver("focus-release 0041 007").effects, "    0 ms  focus 41/7 take\n");
}

TEST(focus_release, refuses_any_other_arguments) {
  TestMac mac(desk);
  const std::vector<std::vector<std::string>> refused = {
      {},
      {"12"},
      {"12", "5", "6"},
      {"0", "5"},
      {"-41", "7"},
      {"abc", "5"},
      {"12", "-1"},
      {"12", "abc"},
      {"", "5"},
      {"12", ""},
      {" 12", "5"},
      {"12", "5 "},
      {"12.0", "5"},
      {"0x29", "7"},
      {"pid:41", "7"},
      {"2147483648", "5"},
      {"12", "4294967296"},
      {"12", "99999999999999999999"},
  };
  for (const auto& arguments : refused) {
    std::vector<std::string> words = {"focus-release"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const Result run = mac.driverWith(words);
    EXPECT_EQ(seen(run), failure("invalid focus release")) << testing::PrintToString(arguments);
    EXPECT_EQ(run.effects, "");
  }
}

}  // namespace focus_release_test
