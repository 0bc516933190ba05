#include <atomic>
#include <thread>

#include "platform/json.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/images.h"
#include "platform/macos/standins/sharing.h"
#include "platform/pasteboard.h"
#include "platform/share.h"
#include "platform/text.h"

/// What adapters do on several threads at the same time. That nothing goes wrong shows the race
/// detector, in the variant of these tests that has it.
namespace {

class adapters : public standins::AdapterTest {
 protected:
  ~adapters() override { standins::resetSharing(); }

  /// Does it on some threads at once, several times on each.
  static void atOnce(const std::function<void()>& work) {
    constexpr int threads = 4;
    constexpr int times = 25;
    std::vector<std::thread> all;
    for (int i = 0; i < threads; ++i) {
      all.emplace_back([&] {
        for (int j = 0; j < times; ++j) loop::doRound(work);
      });
    }
    for (std::thread& each : all) each.join();
  }
};

}  // namespace

TEST_F(adapters, convert_on_several_threads) {
  atOnce([] {
    EXPECT_EQ(json::write(*json::parse("{\"b\":[1,true],\"a\":0.5}")),
              "{\"a\":0.5,\"b\":[1,true]}");
    EXPECT_EQ(text::lowercase("CAF\u00C9"), "caf\u00E9");
  });
}

TEST_F(adapters, ask_for_screenshots_on_several_threads) {
  standins::setShareable({{7, {{1, 2}, {3, 4}}, "title", 0, std::nullopt}}, {{5, {}}});
  // Each in a grey of its own.
  std::atomic<int> asked = 0;
  atOnce([&] {
    const double grey = asked.fetch_add(1, std::memory_order_relaxed) / 1000.0;
    const auto content = share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
    // There is no picture: what is asked for is what matters.
    const std::string error = errorOf([&] {
      share::screenshot(content, share::IncludingFilter{5, {7}}, {.backgroundGrey = grey});
    });
    EXPECT_EQ(error, "the system gave no answer");
  });
}

TEST_F(adapters, start_and_stop_streams_on_several_threads) {
  standins::setShareable({{7, {{1, 2}, {3, 4}}, "title", 0, std::nullopt}}, {});
  atOnce([] {
    const auto content = share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
    const share::Stream stream = share::startStream(content, {7}, {}, "label", [](const auto&) {});
    share::updateFilter(stream, content, {7});
    share::stopStream(stream);
  });
  standins::letSystemFinish();
  EXPECT_EQ(standins::runningStreams(), 0u);
}

// A request comes when the answer to the one before, which nobody waits for any more, ends the
// stream.
TEST_F(adapters, ask_a_stream_that_ends_at_the_same_time) {
  standins::setShareable({{7, {{1, 2}, {3, 4}}, "title", 0, std::nullopt}}, {});
  const auto content = share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
  for (int i = 0; i < 50; ++i) {
    standins::answerRequests({});
    const share::Stream stream = share::startStream(content, {7}, {}, "label", [](const auto&) {});
    standins::letSystemFinish();
    standins::answerRequests({.nanoseconds = 11'000'000'000});
    standins::setLateAnswer(standins::LateAnswer::atTheSameTime);
    errorOf([&] { share::stopStream(stream); });
    const std::string error = errorOf([&] { share::updateFilter(stream, content, {7}); });
    EXPECT_TRUE(error == "the stream has ended" || error == "the system did not answer in time");
    while (standins::letSystemDoNext()) {
    }
  }
}

// The system says that it has stopped a stream just when it is asked to. Its word is heard or not:
// both are right, but for after the request.
TEST_F(adapters, stop_a_stream_that_the_system_stops_at_the_same_time) {
  standins::setShareable({{7, {{1, 2}, {3, 4}}, "title", 0, std::nullopt}}, {});
  const auto content = share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
  for (int i = 0; i < 50; ++i) {
    std::atomic<int> heard = 0;
    const share::Stream stream =
        share::startStream(content, {7}, {}, "label", [&](const auto&) { ++heard; });
    standins::letSystemFinish();
    standins::stopStreams("stopped");
    standins::beginNext();
    errorOf([&] { share::stopStream(stream); });
    standins::letSystemFinish();
    EXPECT_LE(heard, 1);
  }
}
