#include <gtest/gtest.h>

#include <optional>

#include "tests/support/service_desk.h"
#include "tests/support/service_endings.h"

/// Whatever can happen to a capture service, just before every call of a session that does
/// everything.
namespace service_sweep_test {

using namespace testing_support;
using simulator::Microseconds;

/// When what a fault lets happen has happened.
std::optional<Microseconds> happenedAt(const TestMac& mac, const std::string& happening) {
  for (const auto& entry : mac.desktop().mac().journal) {
    if (entry.kind == simulator::JournalEntry::Kind::happening &&
        entry.what.rfind(happening, 0) == 0)
      return entry.at;
  }
  return std::nullopt;
}

bool sharesSomething(const std::string& what, const TestMac& mac) {
  for (const auto& entry : mac.desktop().mac().journal) {
    if (entry.kind == simulator::JournalEntry::Kind::sharing && entry.what == what) return true;
  }
  return false;
}

std::string cutLine(std::string output) {
  if (!output.empty()) output.pop_back();
  const std::size_t start = output.rfind('\n');
  return output.substr(start + 1);
}

std::string withoutLastLine(const std::string& output) {
  const std::size_t end =
      output.size() < 2 ? std::string::npos : output.rfind('\n', output.size() - 2);
  return end == std::string::npos ? "" : output.substr(0, end + 1);
}

TEST(capture_service_ending, a_sharing_that_stops_ends_it_at_any_call) {
  int stopped = 0;
  atEveryCall("stop sharing Notes", [&](const TestMac& mac, const Result& run) {
    if (!sharesSomething("stopped by the system", mac)) {
      EXPECT_EQ(seen(run), served(0, wholeSessionReplies()));
      return;
    }
    EXPECT_TRUE(mac.world().sharings.empty());
    // At the instant at which it ends by itself, it may do so first.
    if (seen(run) == served(0, wholeSessionReplies())) return;
    ++stopped;
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(isPrefixOfSession(withoutLastLine(run.output))) << run.output;
    EXPECT_EQ(cutLine(run.output), sharingStopped) << run.output;
    EXPECT_LE(run.elapsed - *happenedAt(mac, "stop sharing"), 250'000);
  });
  EXPECT_GT(stopped, 150);
}

TEST(capture_service_ending, a_withdrawn_permission_ends_it_at_any_call) {
  int stopped = 0;
  atEveryCall("withdraw recording", [&](const TestMac& mac, const Result& run) {
    if (run.status == 0) return;  // at the instant at which it ends by itself
    EXPECT_EQ(run.status, 1);
    if (sharesSomething("stopped by the system", mac)) ++stopped;
    EXPECT_NE(cutLine(run.output).find("Code=-3801"), std::string::npos) << run.output;
    EXPECT_LE(run.elapsed - *happenedAt(mac, "withdraw"), 250'000);
  });
  EXPECT_GT(stopped, 150);
}

TEST(capture_service_ending, a_signal_ends_it_by_that_signal_at_any_call) {
  for (const int number : {15, 2, 1}) {
    atEveryCall("signal " + std::to_string(number), [&](const TestMac& mac, const Result& run) {
      // Until the service handles signals they end it at once; one that comes as it ends is late.
      if (run.status == 0) {
        EXPECT_EQ(seen(run), served(0, wholeSessionReplies()));
      } else {
        EXPECT_EQ(run.status, 128 + number);
        EXPECT_TRUE(isPrefixOfSession(run.output)) << run.output;
        EXPECT_LE(run.elapsed - *happenedAt(mac, "signal"), 250'000);
      }
      EXPECT_TRUE(mac.world().sharings.empty());
    });
  }
}

TEST(capture_service_ending, nothing_that_happens_to_the_mac_breaks_a_rule_at_any_call) {
  for (const char* happening : {"lock", "leave console", "quit Notes", "hang Notes", "front Notes",
                                "front Mail", "remove displays", "user click 130,95"}) {
    atEveryCall(happening, [&](const TestMac&, const Result& run) {
      EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status;
    });
  }
}

}  // namespace service_sweep_test
