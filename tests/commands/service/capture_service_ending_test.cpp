#include <gtest/gtest.h>

#include "tests/support/inside.h"
#include "tests/support/service_desk.h"
#include "tests/support/service_endings.h"

namespace {

using namespace testing_support;

TEST(capture_service_ending, a_reader_that_goes_ends_it_at_the_next_line) {
  atEveryCall("close output", [&](const TestMac&, const Result& run) {
    const bool isWhole = seen(run) == served(0, wholeSessionReplies());
    EXPECT_EQ(run.status, isWhole ? 0 : 1) << run.output;
    EXPECT_TRUE(isPrefixOfSession(run.output)) << run.output;
  });
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

TEST(capture_service_ending, a_stopped_sharing_counts_what_it_waited_for_an_act) {
  // The stop comes while focus is being given.
  TestMac mac(std::string(serviceDesk) +
              "    at 20ms stall output\n    at 20ms stop sharing Notes\n");

  const Result run = serve(mac, {openLine("n", "Notes"), commandLine("n", "bg-focus-hold Notes")},
                           {{}, {}, false, {}});

  EXPECT_EQ(seen(run), served(1, {notesShared}));
  EXPECT_EQ(run.elapsed, 270'000);
}

TEST(capture_service_ending, a_stopped_sharing_counts_what_it_waited_for_another_line) {
  TestMac mac(
      std::string(serviceDesk) + "    at 100ms stop sharing Notes\n    at 200ms resume output\n",
      {"streams.acquire-output 2 before stall output",
       "streams.write-output 5 before stall output"});

  const Result run = serve(mac, {openLine("n", "Notes")}, {{}, {}, false, {}});

  EXPECT_EQ(seen(run), served(1, {notesShared}));
  EXPECT_EQ(run.elapsed, 350'000);
}

TEST(capture_service_ending, a_stopped_sharing_leaves_its_line_50_milliseconds_at_least) {
  // To give the focus of six applications back takes 240 ms of the 250 ms.
  std::string desk = serviceDesk;
  std::vector<std::string> lines;
  for (const char* digit : {"0", "1", "2", "3", "4", "5"}) {
    const std::string name = "App" + std::string(digit);
    desk += "    app " + name + " pid 5" + digit + "\n        window 2" + digit +
            " \"W\" at 300,300 size 200x200\n";
    lines.push_back(openLine(digit, name));
    lines.push_back(commandLine(digit, "bg-focus-hold " + name));
  }
  TestMac mac(desk + "    at 5s stall output\n    at 5s stop sharing App0\n");

  const Result run = serve(mac, lines, {{}, {}, false, {}});

  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.elapsed, 5'290'000);
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

TEST(capture_service_ending, of_a_session_alone_gives_its_focus_back) {
  TestMac mac(std::string(serviceDesk) + "    at 5s signal 15\n");

  const Result run = serve(
      mac,
      {openLine("n", "Notes"), commandLine("n", "bg-focus-hold Notes"), sessionLine("close", "n")},
      {{}, {}, false, {}});

  EXPECT_EQ(seen(run), served(143, {notesShared, notesHeld, closed}));
  EXPECT_LT(run.effects.find("focus 41/7 take"), run.effects.find("signal 15"));
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
