#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/sharing.h"
#include "platform/macos/standins/user.h"
#include "platform/share.h"

namespace {

using standins::LateAnswer;
using standins::StopTold;

constexpr std::uint64_t second = 1'000'000'000;

class Stream : public standins::AdapterTest {
 protected:
  Stream() {
    standins::setShareable({{7, {{1, 2}, {3, 4}}, "title", 0, std::nullopt},
                            {8, {{5, 6}, {7, 8}}, "other", 0, std::nullopt}},
                           {});
    content = share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
    standins::takeCalls();
  }
  ~Stream() override { standins::resetSharing(); }
  void TearDown() override {
    standins::setNewestVersion();
    content = {};
    AdapterTest::TearDown();
  }

  share::Stream start(const share::StreamConfiguration& configuration = {}) {
    return share::startStream(content, {7}, configuration, "label",
                              [this](const std::string& why) { stops.push_back(why); });
  }

  share::Content content;
  Calls stops;  // what the stop handler was told
};
using startStream = Stream;
using stopStream = Stream;

constexpr const char* ended = "the stream has ended";
constexpr const char* late = "the system did not answer in time";

}  // namespace

TEST_F(startStream, shares_the_window_until_it_is_stopped) {
  const share::Stream stream = start({640, 480, 2, 3, "name", true});
  EXPECT_EQ(standins::takeCalls(),
            (Calls{"stream of window 7: 640x480 queue 3 every 2/1 named name children",
                   "queue label", "start"}));
  EXPECT_EQ(standins::runningStreams(), 1u);
  standins::handFrames();
  share::stopStream(stream);
  EXPECT_EQ(standins::takeCalls(), (Calls{"stop"}));
  EXPECT_EQ(standins::runningStreams(), 0u);
  EXPECT_EQ(stops, Calls{});
}

TEST_F(startStream, asks_for_child_windows_only_where_they_can_be_asked_for) {
  for (const long minor : {1, 2}) {
    standins::setVersion(14, minor);
    share::stopStream(start({640, 480, 2, 3, "name", true}));
  }
  const Calls calls = standins::takeCalls();
  EXPECT_EQ(calls[0], "stream of window 7: 640x480 queue 3 every 2/1 named name");
  EXPECT_EQ(calls[4], "stream of window 7: 640x480 queue 3 every 2/1 named name children");
}

TEST_F(startStream, gives_up_a_stream_that_cannot_start) {
  standins::answerRequests({.error = "not permitted"});
  EXPECT_EQ(errorOf([&] { start(); }), "not permitted");
  EXPECT_EQ(stops, Calls{});
}

// Whoever asked for it is told, and nobody else.
TEST_F(startStream, tells_of_no_stop_when_it_has_failed) {
  standins::answerRequests({.error = "not permitted", .tellsOfStop = true});
  EXPECT_EQ(errorOf([&] { start(); }), "not permitted");
  standins::letSystemFinish();
  EXPECT_EQ(stops, Calls{});
}

TEST_F(startStream, gives_up_a_stream_that_has_stopped_before_it_started) {
  standins::answerRequests({.tellsOfStop = true});
  EXPECT_EQ(errorOf([&] { start(); }), "the system gave no answer");
  standins::letSystemFinish();
  EXPECT_EQ(stops, Calls{});
}

TEST_F(startStream, gives_up_a_stream_without_output) {
  standins::refuseOutput("no output");
  EXPECT_EQ(errorOf([&] { start(); }), "no output");
}

TEST_F(startStream, throws_for_a_window_that_the_content_does_not_hold) {
  content.windows.clear();
  standins::setShareable({}, {});
  content = share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
  EXPECT_EQ(errorOf([&] { start(); }), "the window is not shareable");
}

TEST_F(startStream, stops_a_stream_that_starts_too_late) {
  standins::answerRequests({.nanoseconds = 11 * second});
  EXPECT_EQ(errorOf([&] { start(); }), late);
  standins::takeCalls();
  standins::answerRequests({});
  EXPECT_TRUE(standins::letSystemDoNext());
  EXPECT_EQ(standins::takeCalls(), (Calls{"stop"}));
  EXPECT_EQ(standins::runningStreams(), 1u);
  EXPECT_TRUE(standins::letSystemDoNext());
  EXPECT_EQ(standins::runningStreams(), 0u);
  EXPECT_EQ(stops, Calls{});
}

TEST_F(startStream, takes_a_stream_that_starts_just_when_the_wait_ends) {
  standins::answerRequests({.nanoseconds = 11 * second});
  standins::setLateAnswer(LateAnswer::justTooLate);
  const share::Stream stream = start();
  standins::answerRequests({});
  share::stopStream(stream);
  EXPECT_EQ(standins::takeCalls().back(), "stop");
}

// Whoever is first, no stream is left that nobody knows.
TEST_F(startStream, takes_or_stops_a_stream_that_starts_while_the_wait_ends) {
  for (int i = 0; i < 100; ++i) {
    standins::answerRequests({.nanoseconds = 11 * second});
    standins::setLateAnswer(LateAnswer::atTheSameTime);
    const std::string error = errorOf([&] {
      const share::Stream stream = start();
      standins::letSystemFinish();
      standins::answerRequests({});
      share::stopStream(stream);
    });
    EXPECT_TRUE(error.empty() || error == late) << error;
    while (standins::letSystemDoNext()) {
    }
    EXPECT_EQ(standins::runningStreams(), 0u);
  }
}

TEST_F(startStream, says_nothing_of_a_stop_that_nobody_waits_for) {
  standins::answerRequests({.nanoseconds = std::nullopt});
  EXPECT_EQ(errorOf([&] { start(); }), late);
  EXPECT_EQ(stops, Calls{});
}

TEST_F(Stream, tells_why_the_system_has_stopped_it) {
  const share::Stream stream = start();
  standins::stopStreams("user stopped");
  EXPECT_TRUE(standins::letSystemDoNext());
  EXPECT_EQ(stops, Calls{"user stopped"});
  share::stopStream(stream);
}

// Some releases say so in a way of their own.
TEST_F(Stream, tells_that_the_user_has_stopped_it) {
  const share::Stream stream = start();
  standins::stopStreams("user stopped", StopTold::byUser);
  EXPECT_TRUE(standins::letSystemDoNext());
  EXPECT_EQ(stops, Calls{"stopped by the user"});
  share::stopStream(stream);
}

TEST_F(Stream, tells_once_that_it_has_been_stopped) {
  const share::Stream stream = start();
  standins::stopStreams("user stopped", StopTold::inBothWays);
  EXPECT_TRUE(standins::letSystemDoNext());
  EXPECT_EQ(stops, Calls{"user stopped"});
  share::stopStream(stream);
}

TEST_F(stopStream, gives_the_stream_up_though_the_system_refuses) {
  const share::Stream stream = start();
  standins::answerRequests({.error = "no"});
  EXPECT_EQ(errorOf([&] { share::stopStream(stream); }), "no");
  standins::letSystemFinish();
  EXPECT_EQ(standins::runningStreams(), 0u);
  EXPECT_EQ(errorOf([&] { share::stopStream(stream); }), ended);
}

TEST_F(stopStream, silences_a_stop_that_comes_while_it_is_asked_for) {
  const share::Stream stream = start();
  standins::answerRequests({.nanoseconds = 2});
  standins::stopStreams("stopped");
  share::stopStream(stream);
  EXPECT_EQ(stops, Calls{});
}

TEST_F(stopStream, waits_ten_seconds) {
  const share::Stream stream = start();
  standins::answerRequests({.nanoseconds = 11 * second});
  EXPECT_EQ(errorOf([&] { share::stopStream(stream); }), late);
  EXPECT_EQ(standins::runningStreams(), 1u);
  EXPECT_TRUE(standins::letSystemDoNext());
  EXPECT_EQ(standins::runningStreams(), 0u);
}

TEST_F(stopStream, ends_it_for_all_requests) {
  const share::Stream stream = start();
  share::stopStream(stream);
  EXPECT_EQ(errorOf([&] { share::stopStream(stream); }), ended);
  EXPECT_EQ(errorOf([&] { share::updateFilter(stream, content, {8}); }), ended);
  EXPECT_EQ(errorOf([&] { share::updateConfiguration(stream, {}); }), ended);
}

TEST_F(Stream, is_updated) {
  const share::Stream stream = start();
  standins::takeCalls();
  share::updateFilter(stream, content, {8});
  share::updateConfiguration(stream, {320, 200, 1, 4, "other", false});
  EXPECT_EQ(standins::takeCalls(),
            (Calls{"update filter: window 8",
                   "update configuration: 320x200 queue 4 every 1/1 named other"}));
  share::stopStream(stream);
}

TEST_F(Stream, says_why_it_cannot_be_updated) {
  const share::Stream stream = start();
  standins::answerRequests({.error = "no"});
  EXPECT_EQ(errorOf([&] { share::updateFilter(stream, content, {8}); }), "no");
  EXPECT_EQ(errorOf([&] { share::updateConfiguration(stream, {}); }), "no");
  standins::answerRequests({.nanoseconds = 11 * second});
  EXPECT_EQ(errorOf([&] { share::updateFilter(stream, content, {8}); }), late);
  EXPECT_EQ(errorOf([&] { share::updateConfiguration(stream, {}); }), late);
  standins::answerRequests({});
  share::stopStream(stream);
}
