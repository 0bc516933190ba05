#include <gtest/gtest.h>

#include "tests/support/captured.h"
#include "tests/support/inside.h"
#include "tests/support/simulated_run.h"
#include "tests/support/temporary_folder.h"

/// Which display a capture shows, which part of it, and at which scale.
namespace capture_displays_test {

using namespace testing_support;

using Lines = std::vector<std::string>;

/// A capture of Notes with these displays and windows, front to back.
class CaptureOf {
 public:
  CaptureOf(const Lines& displays, const Lines& windows, Lines faults = {},
            const std::string& more = "")
      : mac_(worldOf(displays, windows) + more, std::move(faults)) {
    result_ = mac_.driver("capture Notes " + folder_.path("out.png"));
  }

  std::string reply() const { return seen(result_); }

  /// Filter and configuration of the screenshot.
  std::string screenshot() const {
    const std::string call = callsOf(mac_, platform::Function::screenshot).at(0);
    const std::size_t start = call.find(' ') + 1;
    return call.substr(start, call.find(" ->") - start);
  }

  PictureFile picture() const { return readPicture(folder_.path("out.png")); }

 private:
  static std::string worldOf(const Lines& displays, const Lines& windows) {
    std::string world;
    for (const std::string& display : displays) world += "    display " + display + "\n";
    world += "    app Notes pid 41 bundle com.example.notes\n";
    for (const std::string& window : windows) world += "        window " + window + "\n";
    return world;
  }

  TestMac mac_;
  TemporaryFolder folder_;
  Result result_;
};

const Lines two = {"1 1000x800 scale 2", "2 500x400 at -500,100 scale 1"};

TEST(captured_display, is_the_one_that_shows_most_of_the_anchor) {
  const CaptureOf run(two, {"7 \"Inbox\" at -150,150 size 200x100"});

  EXPECT_EQ(
      run.reply(),
      success(Captured{
          {-150, 150, 150, 100}, 7, {-150, 150, 200, 100}, {{"Inbox", {-150, 150, 200, 100}}}}));
  EXPECT_EQ(run.screenshot(), "[1 2 [7]] [150 100 [[350 50 150 100]] [0.5]]");
  EXPECT_EQ(run.picture().width, 150);
  EXPECT_EQ(run.picture().height, 100);
}

TEST(captured_display, is_the_first_of_two_that_show_as_much) {
  const CaptureOf run(two, {"7 \"Inbox\" at -100,150 size 200x100"});

  EXPECT_EQ(run.screenshot(), "[1 1 [7]] [200 200 [[0 150 100 100]] [0.5]]");
}

TEST(captured_display, leaves_windows_on_others_to_their_titles) {
  const CaptureOf run(two,
                      {"7 \"Inbox\" at 100,100 size 300x200", "8 \"Left\" at -400,150 size 90x90",
                       "9 at -200,150 size 90x90", "10 \"Both\" at -50,150 size 90x90"});

  EXPECT_EQ(run.reply(),
            success(Captured{{0, 100, 400, 200},
                             7,
                             {100, 100, 300, 200},
                             {{"Inbox", {100, 100, 300, 200}}, {"Both", {-50, 150, 90, 90}}},
                             {"Left", ""}}));
  EXPECT_EQ(run.screenshot(), "[1 1 [7 10]] [800 400 [[0 100 400 200]] [0.5]]");
}

TEST(captured_display, follows_the_anchor_and_not_the_larger_window) {
  const CaptureOf run(two,
                      {"7 \"Front\" at -400,150 size 200x200", "8 \"Large\" at 0,0 size 300x300"});

  EXPECT_EQ(run.reply(), success(Captured{{-400, 150, 200, 200},
                                          7,
                                          {-400, 150, 200, 200},
                                          {{"Front", {-400, 150, 200, 200}}},
                                          {"Large"}}));
}

TEST(captured_display, a_window_that_only_touches_it_lies_elsewhere) {
  const CaptureOf run(two,
                      {"7 \"Inbox\" at 100,100 size 300x200", "8 \"Edge\" at -90,150 size 90x90"});

  EXPECT_EQ(run.reply(), success(Captured{{100, 100, 300, 200},
                                          7,
                                          {100, 100, 300, 200},
                                          {{"Inbox", {100, 100, 300, 200}}},
                                          {"Edge"}}));
}

TEST(captured_display, cuts_off_what_reaches_beyond_it) {
  const CaptureOf run({"1 1000x800 scale 1"}, {"7 \"Inbox\" at 900,-50 size 300x200"});

  EXPECT_EQ(run.reply(),
            success(Captured{
                {900, 0, 100, 150}, 7, {900, -50, 300, 200}, {{"Inbox", {900, -50, 300, 200}}}}));
  EXPECT_EQ(run.screenshot(), "[1 1 [7]] [100 150 [[900 0 100 150]] [0.5]]");
}

TEST(captured_display, counts_a_helper_over_a_part_that_lies_elsewhere) {
  const CaptureOf run(two, {"7 \"Inbox\" at -100,150 size 300x100"}, {},
                      "    app Input pid 50 accessory bundle b\n"
                      "        window 12 at -100,200 size 30x90 layer 3\n");

  EXPECT_EQ(run.reply(), success(Captured{{0, 150, 200, 140},
                                          7,
                                          {-100, 150, 300, 100},
                                          {{"Inbox", {-100, 150, 300, 100}},
                                           {"", {-100, 200, 30, 90}, 3, "Input", "b"}}}));
  EXPECT_EQ(run.screenshot(), "[1 1 [7 12]] [400 280 [[0 150 200 140]] [0.5]]");
}

TEST(captured_display, that_shows_nothing_of_the_application_ends_the_run) {
  const CaptureOf run(two, {"7 \"Inbox\" at 5000,150 size 300x100"});

  EXPECT_EQ(run.reply(), failure("no window on the display"));
}

TEST(captured_display, must_exist) {
  const CaptureOf run({}, {"7 \"Inbox\" at 100,150 size 300x100"},
                      {"share.content 1 before remove displays"});

  EXPECT_EQ(run.reply(), failure("no display"));
}

TEST(captured_display, is_not_needed_without_a_window) {
  const CaptureOf run({}, {}, {"share.content 1 before remove displays"});

  EXPECT_EQ(run.reply(), success(R"({"ok":true,"rect":null,"running":true,"windows":[]})"));
}

TEST(captured_scale, is_the_modes_pixels_for_each_point) {
  const std::pair<const char*, const char*> cases[] = {
      {"1 1440x900 scale 2", "[1 1 [7]] [600 200 [[100 150 300 100]] [0.5]]"},
      {"1 1440x900 scale 1", "[1 1 [7]] [300 100 [[100 150 300 100]] [0.5]]"},
      {"1 1000x900 scale 1.5", "[1 1 [7]] [450 150 [[100 150 300 100]] [0.5]]"},
      {"1 1440x900 scale 3 mode unreadable", "[1 1 [7]] [600 200 [[100 150 300 100]] [0.5]]"}};
  for (const auto& [display, screenshot] : cases) {
    SCOPED_TRACE(display);
    const CaptureOf run({display}, {"7 \"Inbox\" at 100,150 size 300x100"});

    EXPECT_EQ(run.screenshot(), screenshot);
  }
}

TEST(captured_scale, cuts_pixels_to_whole_ones_and_has_at_least_one) {
  const CaptureOf odd({"1 1000x900 scale 1.5"}, {"7 \"Inbox\" at 100,150 size 300.5x100.25"});
  const CaptureOf sliver({"1 1000x900 scale 1"}, {"7 \"Inbox\" at 999.75,150 size 300x100"});

  EXPECT_EQ(odd.screenshot(), "[1 1 [7]] [450 150 [[100 150 300.5 100.25]] [0.5]]");
  EXPECT_EQ(sliver.screenshot(), "[1 1 [7]] [1 100 [[999.75 150 0.25 100]] [0.5]]");
}

TEST(captured_scale, of_a_display_that_is_not_the_main_one_is_its_own) {
  const CaptureOf run({"1 1000x800 scale 1", "2 500x400 at 1000,-400 scale 2"},
                      {"7 \"Inbox\" at 1100,-300 size 100x50"});

  EXPECT_EQ(
      run.reply(),
      success(Captured{
          {1100, -300, 100, 50}, 7, {1100, -300, 100, 50}, {{"Inbox", {1100, -300, 100, 50}}}}));
  EXPECT_EQ(run.screenshot(), "[1 2 [7]] [200 100 [[100 100 100 50]] [0.5]]");
}

TEST(capture_probe, takes_a_small_picture_of_the_first_display_and_discards_it) {
  TestMac mac("    display 3 1000x800\n    display 1 500x400 at -500,0\n");

  const Result run = mac.driver("capture-probe anything");

  EXPECT_EQ(seen(run), success(R"({"ok":true})"));
  EXPECT_EQ(callsOf(mac, platform::Function::shareContent).at(0).substr(0, 15), "share.content 1");
  EXPECT_EQ(callsOf(mac, platform::Function::screenshot).at(0).substr(0, 39),
            "share.screenshot [2 3 []] [16 16 - -] -");
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(capture_probe, needs_no_application_and_no_usable_session) {
  TestMac mac("    session locked off-console\n");

  EXPECT_EQ(seen(mac.driver("capture-probe")), success(R"({"ok":true})"));
}

TEST(capture_probe, without_permission_replies_with_the_systems_description) {
  TestMac mac("    deny screen-recording\n");

  EXPECT_EQ(seen(mac.driver("capture-probe")),
            success(R"({"error":"Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain )"
                    R"(Code=-3801 \"The user declined TCCs for application, window, display )"
                    R"(capture\"","ok":false})"));
}

TEST(capture_probe, replies_with_the_description_of_a_thrown_error) {
  for (const char* fault : {"share.content 1 thrown", "share.screenshot 1 thrown"}) {
    SCOPED_TRACE(fault);
    TestMac mac("", {fault});

    EXPECT_EQ(seen(mac.driver("capture-probe")),
              success(R"({"error":"Error Domain=Simulated Code=1 \"a fault\"","ok":false})"));
  }
}

TEST(capture_probe, needs_a_display) {
  TestMac mac("    at 0ms remove displays\n");

  EXPECT_EQ(seen(mac.driver("capture-probe")), failure("no display"));
}

}  // namespace capture_displays_test
