#include "simulator/mac/sharing_streams.h"

#include <gtest/gtest.h>

#include "platform/loop.h"
#include "platform/share.h"
#include "simulator/drawing/digest.h"
#include "simulator/drawing/pictures.h"
#include "tests/support/inside.h"
#include "tests/support/service_desk.h"

namespace simulator {
namespace {

using namespace testing_support;

share::StreamConfiguration valid() {
  share::StreamConfiguration configuration;
  configuration.width = 640;
  configuration.height = 480;
  configuration.frameIntervalSeconds = 1;
  configuration.queueDepth = 3;
  configuration.name = "a sharing";
  return configuration;
}

share::Stream start(WindowNumber window,
                    const share::StreamConfiguration& configuration = valid()) {
  return share::startStream({}, {window}, configuration, "queue", [](const std::string&) {});
}

/// The code of the platform error that it throws; 0 for none.
int codeOf(const std::function<void()>& operation) {
  try {
    operation();
    return 0;
  } catch (const platform::PlatformError& error) {
    const std::string text = error.what();
    return std::atoi(text.c_str() + text.find("Code=") + 5);
  }
}

TEST(streams, are_refused_where_there_is_nothing_to_share) {
  TestMac mac(serviceDesk);
  runInside(mac, [&] {
    EXPECT_EQ(codeOf([] { start(99); }), -3815);
    mac.desktop().mac().world.screenRecordingAllowed = false;
    EXPECT_EQ(codeOf([] { start(7); }), -3801);
  });
  EXPECT_TRUE(mac.world().sharings.empty());
}

TEST(streams, take_only_configurations_that_the_system_knows) {
  TestMac mac(serviceDesk);
  runInside(mac, [&] {
    auto wrong = valid();
    wrong.width = 0;
    EXPECT_EQ(codeOf([&] { start(7, wrong); }), -3812);
    wrong = valid();
    wrong.queueDepth = 9;
    EXPECT_EQ(codeOf([&] { start(7, wrong); }), -3812);
    auto children = valid();
    children.includesChildWindows = true;
    EXPECT_EQ(codeOf([&] { start(7, children); }), 0);
    mac.desktop().mac().world.system.version = {14, 1};
    EXPECT_EQ(codeOf([&] { start(7, children); }), -3812);
  });
}

TEST(streams, that_have_ended_cannot_be_changed_or_stopped) {
  TestMac mac(serviceDesk);
  runInside(mac, [&] {
    const share::Stream stream = start(7);
    EXPECT_EQ(codeOf([&] { share::updateFilter(stream, {}, {8}); }), 0);
    EXPECT_EQ(codeOf([&] { share::updateFilter(stream, {}, {99}); }), -3815);
    EXPECT_EQ(codeOf([&] { share::updateConfiguration(stream, valid()); }), 0);
    EXPECT_EQ(mac.world().sharings.at(0).window, 8U);
    share::stopStream(stream);
    EXPECT_EQ(codeOf([&] { share::updateFilter(stream, {}, {8}); }), -3809);
    EXPECT_EQ(codeOf([&] { share::updateConfiguration(stream, valid()); }), -3810);
    EXPECT_EQ(codeOf([&] { share::stopStream(stream); }), -3808);
  });
}

TEST(streams, deliver_a_frame_at_once_and_then_one_an_interval) {
  Sharing sharing{1, 5'000'000, 7, 41, valid(), 2'000'000};
  EXPECT_EQ(framesOf(sharing, 2'000'000), 1);
  EXPECT_EQ(framesOf(sharing, 2'999'999), 1);
  EXPECT_EQ(framesOf(sharing, 3'000'000), 2);
  sharing.configuration.frameIntervalSeconds = 10;
  EXPECT_EQ(framesOf(sharing, 61'000'000), 6);
}

TEST(streams, go_on_without_their_window) {
  TestMac mac(serviceDesk);
  runInside(mac, [&] {
    const share::Stream stream = start(7);
    auto& windows = mac.desktop().mac().world.windows;
    windows.erase(std::find_if(windows.begin(), windows.end(),
                               [](const Window& window) { return window.number == 7; }));
    EXPECT_EQ(mac.world().sharings.size(), 1U);
    EXPECT_EQ(codeOf([&] { share::updateFilter(stream, {}, {8}); }), 0);
    share::stopStream(stream);
  });
}

std::string deskWithClosedWindow(const std::string& what) {
  return std::string(serviceDesk) +
         "    at 2500ms in Notes close window\n    system closed-window " + what + "\n";
}

/// What the journal says of streams.
std::vector<std::string> sharingEntries(const TestMac& mac) {
  std::vector<std::string> entries;
  for (const JournalEntry& entry : mac.desktop().mac().journal) {
    if (entry.kind == JournalEntry::Kind::sharing) entries.push_back(entry.what);
  }
  return entries;
}

std::int64_t framesOfFirst(const TestMac& mac) {
  return framesOf(mac.world().sharings.at(0), mac.desktop().mac().now);
}

TEST(streams, have_no_frames_without_their_window_where_they_become_inactive) {
  TestMac mac(deskWithClosedWindow("inactive"));
  runInside(mac, [&] {
    const share::Stream stream = start(7);
    mac.desktop().advanceTo(5'000'000);
    EXPECT_EQ(framesOfFirst(mac), 3);
    share::updateFilter(stream, {}, {8});
    EXPECT_EQ(framesOfFirst(mac), 4);
    mac.desktop().advanceTo(6'000'000);
    EXPECT_EQ(framesOfFirst(mac), 5);
    share::stopStream(stream);
  });
  EXPECT_EQ(sharingEntries(mac),
            (std::vector<std::string>{"start 640x480 as a sharing", "inactive without its window",
                                      "move here", "stop"}));
}

TEST(streams, are_stopped_without_their_window_where_the_system_does_so) {
  TestMac mac(deskWithClosedWindow("stopped"));
  auto told = std::make_shared<std::vector<std::string>>();
  runInside(mac, [&] {
    const auto note = [told](const std::string& why) { told->push_back(why); };
    const share::Stream stream = share::startStream({}, {7}, valid(), "queue", note);
    const share::Stream other = share::startStream({}, {8}, valid(), "queue", note);
    mac.desktop().advanceTo(3'000'000);
    loop::sleepMicroseconds(1'000);
    EXPECT_EQ(*told, std::vector<std::string>{noSource});
    EXPECT_EQ(codeOf([&] { share::stopStream(stream); }), -3808);
    EXPECT_EQ(codeOf([&] { share::stopStream(other); }), 0);
  });
}

TEST(streams, of_an_application_that_quits_have_lost_their_window) {
  TestMac mac(std::string(serviceDesk) + "    macos 15\n    system recording-question never\n" +
              "    at 1ms quit Notes\n");
  runInside(mac, [&] {
    const share::Stream stream = start(7);
    mac.desktop().advanceTo(9'000'000);
    EXPECT_EQ(framesOfFirst(mac), 1);
    share::stopStream(stream);
  });
}

TEST(streams, that_the_system_stops_are_told_of_once) {
  TestMac mac(serviceDesk);
  auto told = std::make_shared<std::vector<std::string>>();
  runInside(mac, [&] {
    const auto note = [told](const std::string& why) { told->push_back(why); };
    const share::Stream stream = share::startStream({}, {7}, valid(), "queue", note);
    const share::Stream other = share::startStream({}, {8}, valid(), "queue", note);
    stopSharing(mac.desktop().mac(), 41, "enough");
    loop::sleepMicroseconds(1'000);
    EXPECT_EQ(*told, std::vector<std::string>{"enough"});
    EXPECT_EQ(codeOf([&] { share::stopStream(stream); }), -3808);
    EXPECT_EQ(codeOf([&] { share::stopStream(other); }), 0);
  });
  EXPECT_EQ(*told, std::vector<std::string>{"enough"});
}

TEST(sharing_mark, is_seen_by_the_user_and_in_no_picture_of_the_window) {
  TestMac mac(serviceDesk);
  const World& world = mac.world();
  const auto screen = digest(screenPicture(world));
  Picture alone;
  alone.width = alone.height = 400;
  alone.source = findWindow(world, 8)->frame;
  alone.windows = {pictureOf(world, *findWindow(world, 8))};
  const auto window = digest(alone);

  mac.desktop().mac().world.sharings.push_back({1, 5'000'000, 8, 42, valid(), 0});
  const auto marked = digest(screenPicture(world));
  EXPECT_NE(marked, screen);
  alone.windows = {pictureOf(world, *findWindow(world, 8))};
  EXPECT_EQ(digest(alone), window);

  mac.desktop().mac().world.sharings[0].configuration.name = "another";
  EXPECT_NE(digest(screenPicture(world)), marked);
  mac.desktop().mac().world.sharings.clear();
  EXPECT_EQ(digest(screenPicture(world)), screen);
}

}  // namespace
}  // namespace simulator
