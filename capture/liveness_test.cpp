#include "capture/liveness.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using platform::Function;

using Calls = std::vector<std::string>;

constexpr const char* livenessDesk = R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20
)";

constexpr const char* passed = "0 ";
const std::string stopped = failure("native screen sharing stopped; background input is disabled");

Result check(TestMac& mac, const Environment& environment) {
  return runInside(
      mac, [] { requireCaptureAlive(); }, environment);
}

/// The check with this service; the processes that were signalled go to `signalled`.
std::string seenOf(const std::string& service, Calls& signalled) {
  TestMac mac(livenessDesk);
  const Result run = check(mac, {{"CU_CAPTURE_PID", service}});
  signalled = callsOf(mac, Function::nullSignal);
  return seen(run);
}

TEST(requireCaptureAlive, passes_without_a_service) {
  TestMac mac(livenessDesk);
  for (const Environment& environment : {Environment{}, Environment{{"CU_CAPTURE_PID", ""}}}) {
    const Result run = check(mac, environment);
    EXPECT_EQ(seen(run), passed);
    EXPECT_EQ(run.calls, Calls{"process.environment"});
  }
}

TEST(requireCaptureAlive, passes_while_the_service_lives) {
  Calls signalled;
  for (const char* service : {"900", "+900", "0900", "41"}) {
    EXPECT_EQ(seenOf(service, signalled), passed) << service;
    EXPECT_EQ(signalled.size(), 1U) << service;
  }
}

TEST(requireCaptureAlive, fails_when_the_service_has_gone) {
  Calls signalled;
  EXPECT_EQ(seenOf("901", signalled), stopped);
  EXPECT_EQ(signalled, Calls{"process.null-signal 901 -> false"});
  EXPECT_EQ(seenOf("2147483647", signalled), stopped);
}

TEST(requireCaptureAlive, fails_when_the_service_may_not_be_signalled) {
  TestMac mac(livenessDesk, {"process.null-signal 1 refused"});
  EXPECT_EQ(seen(check(mac, {{"CU_CAPTURE_PID", "900"}})), stopped);
}

TEST(requireCaptureAlive, passes_without_a_signal_when_the_id_does_not_parse) {
  Calls signalled;
  for (const char* service :
       {"abc", "12 ", " 12", "99999999999", "2147483648", "-2147483649", "+", "-", "--1", "1.0",
        "0x10", "12a", "\n12", "901\n", "pid:901", "\xFF"}) {
    EXPECT_EQ(seenOf(service, signalled), passed) << service;
    EXPECT_EQ(signalled, Calls{}) << service;
  }
}

TEST(requireCaptureAlive, signals_ids_of_groups_as_they_are) {
  Calls signalled;
  EXPECT_EQ(seenOf("-1", signalled), passed);
  EXPECT_EQ(signalled, Calls{"process.null-signal -1 -> true"});
  EXPECT_EQ(seenOf("0", signalled), passed);
  EXPECT_EQ(signalled, Calls{"process.null-signal 0 -> true"});
  EXPECT_EQ(seenOf("-77", signalled), stopped);
  EXPECT_EQ(signalled, Calls{"process.null-signal -77 -> false"});
}

TEST(requireCaptureAlive, reads_the_variable_and_asks_afresh_each_time) {
  TestMac mac(livenessDesk, {"process.null-signal 2 before end process 900"});
  const Result run = runInside(mac,
                               [] {
                                 requireCaptureAlive();
                                 requireCaptureAlive();
                               },
                               {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(seen(run), stopped);
  EXPECT_EQ(run.calls, (Calls{"process.environment", "process.null-signal", "process.environment",
                              "process.null-signal"}));
}

TEST(requireCaptureAlive, ends_a_click_before_the_next_event_when_the_service_dies) {
  TestMac mac(std::string(livenessDesk) + "    at 45ms end process 900\n");
  const Result run = mac.driver("bg-click Notes 130 95", {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(seen(run), stopped);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved -1,-1 private: priming
   45 ms  happening 900/0 end process 900
   67 ms  focus 41/7 take
)");
}

TEST(requireCaptureAlive, ends_a_click_before_its_first_event_when_the_service_dies_early) {
  TestMac mac(std::string(livenessDesk) + "    at 1ms end process 900\n");
  const Result run = mac.driver("bg-click Notes 130 95", {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(seen(run), stopped);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
    1 ms  happening 900/0 end process 900
   40 ms  focus 41/7 take
)");
}

TEST(requireCaptureAlive, does_not_look_at_a_service_that_dies_after_the_last_event) {
  TestMac mac(std::string(livenessDesk) + "    at 300ms end process 900\n");
  const Result run = mac.driver("bg-click Notes 130 95", {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(seen(run), success(R"({"changed":false,"ok":true,"via":"background","window":7})"));
}

}  // namespace
}  // namespace driver
