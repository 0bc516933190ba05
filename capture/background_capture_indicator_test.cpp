#include "capture/background_capture_indicator.h"

#include <gtest/gtest.h>

#include <limits>

#include "main/globals.h"
#include "platform/json.h"
#include "platform/loop.h"
#include "tests/support/inside.h"
#include "tests/support/service_desk.h"

namespace driver {
namespace {

using namespace testing_support;

using Pixels = std::pair<std::uint64_t, std::uint64_t>;

Pixels pixelsFor(double width, double height) {
  const auto configuration = streamConfiguration({10, 20, width, height}, {14, 2});
  return {configuration.width, configuration.height};
}

TEST(stream_configuration, scales_the_longer_side_to_640_pixels_at_most) {
  EXPECT_EQ(pixelsFor(1000, 500), Pixels(640, 320));
  EXPECT_EQ(pixelsFor(500, 1000), Pixels(320, 640));
  EXPECT_EQ(pixelsFor(300, 200), Pixels(300, 200));
  EXPECT_EQ(pixelsFor(640, 640), Pixels(640, 640));
  EXPECT_EQ(pixelsFor(640.5, 320.5), Pixels(640, 320));
  EXPECT_EQ(pixelsFor(300.9, 200.1), Pixels(300, 200));
}

TEST(stream_configuration, is_never_below_2_by_2_pixels) {
  EXPECT_EQ(pixelsFor(0.5, 0.5), Pixels(2, 2));
  EXPECT_EQ(pixelsFor(6400, 1), Pixels(640, 2));
  EXPECT_EQ(pixelsFor(0, 0), Pixels(2, 2));
  EXPECT_EQ(pixelsFor(-5, 100), Pixels(2, 100));
}

TEST(stream_configuration, of_a_frame_that_is_no_frame_is_the_smallest) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(pixelsFor(nan, 100), Pixels(2, 2));
  EXPECT_EQ(pixelsFor(infinity, 100), Pixels(2, 2));
}

TEST(stream_configuration, is_cheap_and_named) {
  const auto configuration = streamConfiguration({0, 0, 100, 100}, {14, 2});
  EXPECT_EQ(configuration.frameIntervalSeconds, 1);
  EXPECT_EQ(configuration.queueDepth, 3);
  EXPECT_EQ(configuration.name, "Zentrove Desk \u00b7 background operation in this window");
}

TEST(stream_configuration, asks_for_child_windows_where_the_system_knows_them) {
  const auto asks = [](process::Version version) {
    return streamConfiguration({0, 0, 100, 100}, version).includesChildWindows;
  };
  EXPECT_FALSE(asks({14, 0}));
  EXPECT_FALSE(asks({14, 1}));
  EXPECT_TRUE(asks({14, 2}));
  EXPECT_TRUE(asks({15, 0}));
}

/// What an indicator's operation says.
std::string said(const std::function<Reply()>& operation) {
  try {
    return json::write(Value(operation()));
  } catch (const InputFailure& failure) {
    return failure.what();
  } catch (const platform::PlatformError& error) {
    return error.what();
  }
}

using Calls = std::vector<std::string>;

TEST(indicator, refreshes_the_same_window_without_any_capture_call) {
  TestMac mac(serviceDesk);

  const Result run = runInside(mac, [] {
    BackgroundCaptureIndicator indicator("pid:41");
    indicator.refresh();
    indicator.refresh();
  });

  const Calls lookUp = {"workspace.application"};
  const Calls choice = {"windowserver.session", "workspace.terminated", "process.null-signal",
                        "windowserver.windows"};
  const Calls start = {"share.content", "process.operating-system-version", "share.start-stream",
                       "loop.start-flow"};
  Calls all = lookUp;
  for (const Calls& part : {choice, start, choice}) all.insert(all.end(), part.begin(), part.end());
  EXPECT_EQ(run.calls, all);
}

TEST(indicator, counts_one_hold_however_often_it_is_asked) {
  TestMac mac(serviceDesk);

  runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Notes");
    indicator.refresh();
    indicator.holdFocus();
    EXPECT_EQ(globals().heldInputFocus.at(41).count, 1);
    indicator.holdFocus();
    EXPECT_EQ(globals().heldInputFocus.at(41).count, 1);
    EXPECT_EQ(globals().heldInputFocus.at(41).window, 7U);
    indicator.stop();
    EXPECT_TRUE(globals().heldInputFocus.empty());
    indicator.stop();
  });
}

/// How many records two holds of Notes post when its text has the keyboard first, and this happens
/// between them. One that gives focus posts three.
std::size_t recordsOfTwoHolds(const std::string& happenings) {
  TestMac mac(R"(
    app Browser pid 40 frontmost
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 300x300
            AXTextArea "Body" at 120,130 size 100x100 focused
        window 8 "Outbox" at 500,80 size 300x300
            AXTextArea "Draft" at 520,130 size 100x100
)" + happenings);
  runInside(mac, [] {
    BackgroundCaptureIndicator indicator("pid:41");
    indicator.refresh();
    indicator.holdFocus();
    loop::sleepMicroseconds(500'000);
    indicator.holdFocus();
    indicator.stop();
  });
  return postedRecords(mac).size();
}

TEST(indicator, gives_focus_again_when_another_window_has_become_key) {
  const std::size_t once = recordsOfTwoHolds("");
  EXPECT_EQ(recordsOfTwoHolds("    at 300ms user click 530,140\n    at 400ms front Browser\n"),
            once + 3);
}

TEST(indicator, does_not_bring_back_a_hold_that_has_gone) {
  TestMac mac(serviceDesk);

  runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Notes");
    indicator.refresh();
    indicator.holdFocus();
    globals().heldInputFocus.clear();
    indicator.holdFocus();
    EXPECT_TRUE(globals().heldInputFocus.empty());
    indicator.stop();
  });
  mac.takeViolations();  // the test has taken the hold away
}

TEST(indicator, of_two_sessions_of_a_process_the_last_gives_focus_back) {
  TestMac mac(serviceDesk);

  const Result run = runInside(mac, [] {
    BackgroundCaptureIndicator first("Notes");
    BackgroundCaptureIndicator second("com.example.notes");
    first.refresh();
    second.refresh();
    first.holdFocus();
    second.holdFocus();
    EXPECT_EQ(globals().heldInputFocus.at(41).count, 2);
    first.stop();
    EXPECT_EQ(globals().heldInputFocus.at(41).count, 1);
    second.stop();
  });

  EXPECT_EQ(run.effects.find("take"), run.effects.rfind("take"));
  EXPECT_NE(run.effects.find("take"), std::string::npos);
}

TEST(indicator, that_has_stopped_ends_no_hold_of_another) {
  TestMac mac(serviceDesk);

  runInside(mac, [] {
    BackgroundCaptureIndicator first("Notes");
    BackgroundCaptureIndicator second("Notes");
    for (BackgroundCaptureIndicator* indicator : {&first, &second}) {
      indicator->refresh();
      indicator->holdFocus();
    }
    first.stop();
    first.stop();
    EXPECT_EQ(globals().heldInputFocus.count(41), 1U);
    second.stop();
  });
}

TEST(indicator, holds_no_focus_before_it_shares) {
  TestMac mac(serviceDesk);

  runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Notes");
    EXPECT_EQ(said([&] { return indicator.holdFocus(); }),
              "InputFailure(message: \"no shared window for input\")");
    EXPECT_TRUE(globals().heldInputFocus.empty());
  });
}

TEST(indicator, leaves_an_application_in_front_alone_but_notes_the_hold) {
  TestMac mac(serviceDesk);

  const Result run = runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Browser");
    indicator.refresh();
    EXPECT_EQ(said([&] { return indicator.holdFocus(); }),
              R"({"focusPid":40,"focusWindow":5,"ok":true})");
    EXPECT_EQ(globals().heldInputFocus.at(40).count, 1);
    indicator.stop();
  });

  EXPECT_EQ(run.effects.find("focus"), std::string::npos);
}

class indicator_refusal : public testing::TestWithParam<const char*> {};

TEST_P(indicator_refusal, of_focus_keeps_the_hold_noted) {
  TestMac mac(serviceDesk, {GetParam()});

  runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Notes");
    indicator.refresh();
    EXPECT_EQ(said([&] { return indicator.holdFocus(); }),
              "InputFailure(message: \"background key-window selection failed\")");
    EXPECT_EQ(globals().heldInputFocus.at(41).count, 1);
    indicator.stop();
  });
}

INSTANTIATE_TEST_SUITE_P(records, indicator_refusal,
                         testing::Values("private.process-for-pid 1 error -600",
                                         "private.post-record 1 error -600",
                                         "private.post-record 2 error -600",
                                         "private.post-record 3 error -600"));

TEST(indicator, keeps_what_it_shared_when_the_next_window_is_refused) {
  for (const char* fault : {"share.content 2 thrown", "share.update-filter 1 thrown",
                            "share.update-configuration 1 thrown"}) {
    TestMac mac(std::string(serviceDesk) + "        window 9 \"Other\" at 910,90 size 480x580\n",
                {fault});
    runInside(mac, [&] {
      BackgroundCaptureIndicator indicator("Mail");
      const std::string first = said([&] { return indicator.refresh(); });
      auto& windows = mac.desktop().mac().world.windows;
      std::swap(windows[2], windows[3]);
      EXPECT_EQ(said([&] { return indicator.refresh(); }),
                "Error Domain=Simulated Code=1 \"a fault\"");
      std::swap(windows[2], windows[3]);
      EXPECT_EQ(said([&] { return indicator.refresh(); }), first);
      indicator.stop();
    });
  }
}

TEST(indicator, drops_a_stream_that_did_not_start) {
  TestMac mac(serviceDesk, {"share.start-stream 1 thrown"});

  const Result run = runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Notes");
    EXPECT_EQ(said([&] { return indicator.refresh(); }),
              "Error Domain=Simulated Code=1 \"a fault\"");
    indicator.refresh();
    indicator.stop();
  });

  EXPECT_EQ(run.effects.find("start"), run.effects.rfind("start"));
}

TEST(indicator, stops_for_good_whatever_the_system_says) {
  TestMac mac(serviceDesk, {"share.stop-stream 1 thrown"});

  runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Notes");
    indicator.refresh();
    indicator.stop();
    indicator.stop();
  });

  EXPECT_EQ(callsOf(mac, platform::Function::stopStream).size(), 1U);
}

TEST(indicator, asks_for_the_largest_window_when_the_list_is_not_to_be_had) {
  TestMac mac(serviceDesk, {"windowserver.windows 1+ absent"});

  runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Notes");
    const std::string reply = R"({"ok":true,"sharing":true,"targetPid":41,"windowId":7})";
    EXPECT_EQ(said([&] { return indicator.refresh(); }), reply);
    EXPECT_EQ(said([&] { return indicator.refresh(); }), reply);
    indicator.stop();
  });

  EXPECT_EQ(callsOf(mac, platform::Function::startStream).size(), 1U);
  EXPECT_EQ(callsOf(mac, platform::Function::updateFilter).size(), 0U);
}

TEST(indicator, refuses_a_window_that_cannot_be_shared) {
  TestMac mac(serviceDesk, {"share.content 1 empty"});

  runInside(mac, [] {
    BackgroundCaptureIndicator indicator("Notes");
    EXPECT_EQ(said([&] { return indicator.refresh(); }),
              "InputFailure(message: \"capture target window disappeared\")");
  });
}

}  // namespace
}  // namespace driver
