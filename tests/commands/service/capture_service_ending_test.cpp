#include <gtest/gtest.h>

#include <functional>

#include "tests/support/inside.h"
#include "tests/support/service_desk.h"

namespace {

using namespace testing_support;
using simulator::Microseconds;

/// How many calls the whole session makes when nothing happens to it.
std::size_t callsOfWholeSession() {
  TestMac mac(serviceDesk);
  const Result run = serve(mac, wholeSession());
  EXPECT_EQ(seen(run), served(0, wholeSessionReplies()));
  return mac.desktop().trace().size();
}

bool isPrefixOfSession(const std::string& output) {
  const std::string whole = served(0, wholeSessionReplies()).substr(2);
  return whole.compare(0, output.size(), output) == 0;
}

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

/// Runs the whole session with something happening just before each of its calls in turn.
void atEveryCall(const std::string& happening,
                 const std::function<void(const TestMac&, const Result&)>& check) {
  const std::size_t calls = callsOfWholeSession();
  ASSERT_GT(calls, 200U);
  for (std::size_t call = 1; call <= calls; ++call) {
    const std::string fault = "any " + std::to_string(call) + " before " + happening;
    SCOPED_TRACE(fault);
    TestMac mac(serviceDesk, {fault});
    check(mac, serve(mac, wholeSession()));
    if (testing::Test::HasFailure()) return;
  }
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

TEST(capture_service_ending, a_reader_that_goes_ends_it_at_the_next_line) {
  atEveryCall("close output", [&](const TestMac&, const Result& run) {
    const bool isWhole = seen(run) == served(0, wholeSessionReplies());
    EXPECT_EQ(run.status, isWhole ? 0 : 1) << run.output;
    EXPECT_TRUE(isPrefixOfSession(run.output)) << run.output;
  });
}

TEST(capture_service_ending, nothing_that_happens_to_the_mac_breaks_a_rule_at_any_call) {
  for (const char* happening : {"lock", "leave console", "quit Notes", "hang Notes", "front Notes",
                                "front Mail", "remove displays", "user click 130,95"}) {
    atEveryCall(happening, [&](const TestMac&, const Result& run) {
      EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status;
    });
  }
}

TEST(capture_service_ending, a_stopped_sharing_does_not_wait_for_a_stalled_reader) {
  TestMac mac(std::string(serviceDesk) + "    at 100ms stop sharing Notes\n",
              {"streams.acquire-output 2 before stall output"});

  const Result run = serve(mac, {openLine("n", "Notes")}, {{}, {}, false, {}});

  EXPECT_EQ(seen(run), served(1, {}));
  EXPECT_EQ(run.elapsed, 350'000);
}

TEST(capture_service_ending, a_stopped_sharing_gives_held_focus_back_in_the_same_time) {
  TestMac mac(std::string(serviceDesk) + "    at 2s stall output\n    at 2s stop sharing Notes\n");

  const Result run = serve(mac, {openLine("n", "Notes"), commandLine("n", "bg-focus-hold Notes")},
                           {{}, {}, false, {}});

  EXPECT_EQ(seen(run), served(1, {notesShared, notesHeld}));
  EXPECT_EQ(run.elapsed, 2'250'000);
  EXPECT_NE(run.effects.find("focus 41/7 take"), std::string::npos);
}

TEST(capture_service_ending, a_stopped_sharing_ends_it_while_it_waits_for_a_request) {
  TestMac mac(std::string(serviceDesk) + "    at 5s stop sharing Mail \"gone \\\"for good\\\"\"\n");

  const Result run =
      serve(mac, {openLine("n", "Notes"), openLine("m", "Mail")}, {{}, {}, false, {}});

  EXPECT_EQ(seen(run),
            served(1, {notesShared, mailShared,
                       R"({"error":"native screen sharing stopped: gone \"for good\"","ok":false,)"
                       R"("sharing":false})"}));
  EXPECT_EQ(run.elapsed, 5'000'000);
}

TEST(capture_service_ending, a_signal_does_not_wait_for_a_stalled_reader) {
  TestMac mac(std::string(serviceDesk) + "    at 100ms signal 15\n",
              {"streams.acquire-output 2 before stall output"});

  const Result run = serve(mac, {openLine("n", "Notes")}, {{}, {}, false, {}});

  EXPECT_EQ(seen(run), served(143, {}));
  EXPECT_EQ(run.elapsed, 350'000);
}

TEST(capture_service_ending, a_stalled_reader_that_reads_on_gets_all_lines) {
  TestMac mac(std::string(serviceDesk) + "    at 3s resume output\n",
              {"streams.acquire-output 2 before stall output"});

  const Result run = serve(mac, {openLine("n", "Notes"), openLine("m", "Mail")});

  EXPECT_EQ(seen(run), served(0, {notesShared, mailShared}));
  EXPECT_EQ(run.elapsed, 3'000'000);
}

TEST(capture_service_ending, closing_the_input_stops_every_stream_and_gives_focus_back) {
  TestMac mac(serviceDesk);

  const Result run =
      serve(mac, {openLine("n", "Notes"), openLine("m", "Mail"),
                  commandLine("n", "bg-focus-hold Notes"), commandLine("m", "bg-focus-hold Mail")});

  const std::string mailHeld = R"({"ok":true,"reply":{"focusPid":42,"focusWindow":8,"ok":true}})";
  EXPECT_EQ(seen(run), served(0, {notesShared, mailShared, notesHeld, mailHeld}));
  EXPECT_EQ(
      run.effects.substr(std::min(run.effects.find("focus 42/8 take") - 10, run.effects.size())),
      "  680 ms  focus 42/8 take\n"
      "  720 ms  sharing 42/8 stop\n"
      "  720 ms  focus 41/7 take\n"
      "  760 ms  sharing 41/7 stop\n");
}

TEST(capture_service_ending, a_failure_gives_held_focus_back) {
  TestMac mac(serviceDesk);

  const Result run =
      serve(mac, {openLine("n", "Notes"), commandLine("n", "bg-focus-hold Notes"), "[]"});

  EXPECT_EQ(seen(run), failedService({notesShared, notesHeld}, "invalid capture service request"));
  EXPECT_NE(run.effects.find("focus 41/7 take"), std::string::npos);
}

TEST(capture_service_ending, held_focus_is_not_taken_from_the_user) {
  TestMac mac(serviceDesk, {"streams.read-line 3 before front Notes"});

  const Result run = serve(mac, {openLine("n", "Notes"), commandLine("n", "bg-focus-hold Notes")});

  EXPECT_EQ(seen(run), served(0, {notesShared, notesHeld}));
  EXPECT_EQ(run.effects.find("take"), std::string::npos);
}

TEST(capture_service_ending, an_uncatchable_signal_takes_its_sharing_with_it) {
  TestMac mac(std::string(serviceDesk) + "    at 1s signal 9\n");

  const Result run = serve(mac, {openLine("n", "Notes"), commandLine("n", "bg-focus-hold Notes")},
                           {{}, {}, false, {}});

  EXPECT_EQ(seen(run), served(137, {notesShared, notesHeld}));
  EXPECT_TRUE(mac.world().sharings.empty());
  EXPECT_EQ(seen(mac.driver("session", {{"CU_CAPTURE_PID", "5000000"}})),
            failure("native screen sharing stopped; background input is disabled"));
  const Result release = mac.driver("focus-release 41 7");
  EXPECT_EQ(seen(release), success(R"({"ok":true})"));
  EXPECT_EQ(release.effects, "    0 ms  focus 41/7 take\n");
}

}  // namespace
