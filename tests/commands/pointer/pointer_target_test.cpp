#include <gtest/gtest.h>

#include "tests/support/posted_events.h"
#include "tests/support/simulated_run.h"

/// Which application and which window a pointer command goes to.
namespace pointer_target_test {

using namespace testing_support;

/// Moves go to what is under the point, without further conditions.
Result moved(const std::string& world, const std::string& arguments,
             const Environment& environment = {}) {
  TestMac mac(world);
  return mac.driver("bg-move " + arguments, environment);
}

std::string window(platform::WindowNumber number) {
  return success(R"({"changed":false,"ok":true,"via":"background","window":)" +
                 std::to_string(number) + "}");
}

const std::string noWindow =
    success(R"({"error":"no window of the app under the point","ok":false})");
const std::string notRunning =
    success(R"({"error":"target app is not running or is hidden","ok":false})");

constexpr const char* applications = R"(
    app Browser pid 40 frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 at 100,80 size 100x100
    app com.example.notes pid 42 bundle com.example.other
        window 8 at 100,80 size 100x100
    app Hidden pid 43 hidden
        window 9 at 100,80 size 100x100
)";

TEST(pointer_application, is_named_by_process_id_bundle_or_name) {
  EXPECT_EQ(seen(moved(applications, "pid:41 150 150")), window(7));
  EXPECT_EQ(seen(moved(applications, "com.example.notes 150 150")), window(7));
  EXPECT_EQ(seen(moved(applications, "Notes 150 150")), window(7));
  EXPECT_EQ(seen(moved(applications, "com.example.other 150 150")), window(8));
}

TEST(pointer_application, that_does_not_run_or_is_hidden_is_refused) {
  for (const char* arguments :
       {"notes 150 150", "Nobody 150 150", "pid:99 150 150", "Hidden 150 150", "pid:43 150 150"}) {
    SCOPED_TRACE(arguments);

    const Result run = moved(applications, arguments);

    EXPECT_EQ(seen(run), notRunning);
    EXPECT_EQ(run.effects, "");
    EXPECT_EQ(run.elapsed, 0);
  }
}

constexpr const char* stack = R"(
    app Browser pid 40 frontmost
        window 5 "Cover" at 0,0 size 1000x800
    app Notes pid 41
        window 6 "Panel" at 300,100 size 100x100 layer 999
        window 7 "Front" at 100,100 size 100x100
        window 8 "Back" at 150,100 size 100x100
        window 9 "System" at 500,100 size 100x100 layer 1000
        window 10 "Shield" at 300,100 size 50x50 layer 2000
        window 11 "Gone" at 700,100 size 100x100 off-screen
        window 12 "Below" at 900,100 size 10x10 layer -20
)";

TEST(pointer_window, is_the_frontmost_of_the_application_that_holds_the_point) {
  EXPECT_EQ(seen(moved(stack, "Notes 120 150")), window(7));
  EXPECT_EQ(seen(moved(stack, "Notes 160 150")), window(7));
  EXPECT_EQ(seen(moved(stack, "Notes 220 150")), window(8));
  EXPECT_EQ(seen(moved(stack, "Browser 160 150")), window(5));
}

TEST(pointer_window, begins_at_its_left_and_top_edge_and_ends_before_the_others) {
  EXPECT_EQ(seen(moved(stack, "Notes 100 100")), window(7));
  EXPECT_EQ(seen(moved(stack, "Notes 199.5 199.5")), window(7));
  EXPECT_EQ(seen(moved(stack, "Notes 200 150")), window(8));
  EXPECT_EQ(seen(moved(stack, "Notes 150 200")), noWindow);
  EXPECT_EQ(seen(moved(stack, "Notes 99.5 150")), noWindow);
}

TEST(pointer_window, lies_below_layer_1000) {
  EXPECT_EQ(seen(moved(stack, "Notes 380 180")), window(6));
  EXPECT_EQ(seen(moved(stack, "Notes 320 120")), window(6));
  EXPECT_EQ(seen(moved(stack, "Notes 550 150")), noWindow);
  EXPECT_EQ(seen(moved(stack, "Notes 905 105")), window(12));
}

TEST(pointer_window, is_on_screen) { EXPECT_EQ(seen(moved(stack, "Notes 750 150")), noWindow); }

TEST(pointer_window, is_none_when_the_server_gives_no_usable_list) {
  for (const char* fault : {"windowserver.windows 1 absent", "windowserver.windows 1 empty",
                            "windowserver.windows 1 wrong"}) {
    SCOPED_TRACE(fault);
    TestMac mac(stack, {fault});

    const Result run = mac.driver("bg-click Notes 120 150");

    EXPECT_EQ(seen(run), noWindow);
    EXPECT_EQ(run.effects, "");
  }
}

constexpr const char* titles = R"(
    app Browser pid 40 frontmost
    app Notes pid 41
        window 6 "Groceries" at 100,100 size 100x100
        window 7 "Draft — Work — Notes" at 100,100 size 300x100
        window 8 at 300,100 size 50x50
        window 9 "" at 320,100 size 100x100
        window 10 "Work" at 500,100 size 100x100
        window 11 "Workshop" at 700,100 size 100x100
)";

TEST(pointer_window, in_a_scope_has_a_title_in_it_or_none) {
  const Environment work = {{"CU_WINDOW", "WORK"}};

  EXPECT_EQ(seen(moved(titles, "Notes 150 150", work)), window(7));
  EXPECT_EQ(seen(moved(titles, "Notes 310 120", work)), window(7));
  EXPECT_EQ(seen(moved(titles, "Notes 410 120", work)), window(9));
  EXPECT_EQ(seen(moved(titles, "Notes 550 150", work)), window(10));
  EXPECT_EQ(seen(moved(titles, "Notes 750 150", work)), noWindow);
  EXPECT_EQ(seen(moved(titles, "Notes 150 150", {{"CU_WINDOW", ""}})), window(6));
}

TEST(pointer_window, without_a_title_is_never_filtered) {
  const Environment elsewhere = {{"CU_WINDOW", "nowhere"}};

  EXPECT_EQ(seen(moved(titles, "Notes 310 120", elsewhere)), window(8));
  EXPECT_EQ(seen(moved(titles, "Notes 410 120", elsewhere)), window(9));
  EXPECT_EQ(seen(moved(titles, "Notes 150 150", elsewhere)), noWindow);
}

TEST(pointer_window, is_in_every_scope_when_no_titles_are_told) {
  const std::string untold = std::string(titles) + "    deny screen-recording\n";

  EXPECT_EQ(seen(moved(untold, "Notes 150 150", {{"CU_WINDOW", "nowhere"}})),
            success(R"({"changed":true,"ok":true,"via":"background","window":6})"));
}

TEST(pointer_window, of_a_target_in_front_needs_the_keyboard_in_the_scope) {
  const std::string front = std::string(titles) + "    at 0ms front Notes\n";

  EXPECT_EQ(seen(moved(front, "Notes 150 150", {{"CU_WINDOW", "work"}})),
            failure("another window of the target app currently owns the user's keyboard; "
                    "background input will not switch it"));
  EXPECT_EQ(seen(moved(front, "Notes 150 150", {{"CU_WINDOW", "groceries"}})), window(6));
}

constexpr const char* displays = R"(
    display 1 1440x900 scale 2
    display 2 1920x1080 at -1920,-200 scale 1
    display 3 800x600 at 1440,-600 scale 1.5
    app Browser pid 40 frontmost
    app Notes pid 41
        window 7 "Left" at -1800,-150 size 400x300
            AXCheckBox "Done" at -1790,-140 size 60x20
    app Chat pid 42 chromium
        window 9 "Above" at 1500,-550.5 size 400x300
            AXCheckBox "Done" at 1510,-540 size 60x20
        window 10 "Across" at -100,200 size 400x300
            AXCheckBox "Done" at -10,210 size 60x20
)";

TEST(pointer_display, with_a_negative_origin_is_clicked_in_global_points) {
  TestMac mac(displays);

  const Result run = mac.driver("bg-click Notes -1780 -130");

  EXPECT_EQ(seen(run), success(R"({"changed":true,"ok":true,"via":"background","window":7})"));
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved -1,-1 private: priming
   67 ms  post 41/7 left-down -1,-1 private: priming
   80 ms  post 41/7 left-up -1,-1 private: priming
  192 ms  post 41/7 moved -1780,-130 private: priming
  219 ms  post 41/7 left-down -1780,-130 private: press
  232 ms  post 41/7 left-up -1780,-130 private: pressed AXCheckBox "Done"
  344 ms  focus 41/7 take
)");
}

TEST(pointer_display, of_another_scale_is_clicked_in_points_of_the_window) {
  TestMac mac(displays);

  const Result run = mac.driver("bg-click Chat 1520 -530 right");
  const std::string events = postedEvents(mac);

  EXPECT_EQ(seen(run), success(R"({"changed":false,"ok":true,"via":"background","window":9})"));
  EXPECT_NE(events.find("type 3 at 1520,-530, in window 20,20.5,"), std::string::npos);
}

TEST(pointer_display, a_window_across_two_displays_is_one) {
  TestMac mac(displays);

  EXPECT_EQ(seen(mac.driver("bg-click Chat -5 215")),
            success(R"({"changed":true,"ok":true,"via":"background","window":10})"));
  EXPECT_EQ(seen(mac.driver("bg-click Chat 5 215")),
            success(R"({"changed":true,"ok":true,"via":"background","window":10})"));
}

TEST(pointer_display, the_point_that_stands_for_off_screen_is_one_like_any_other) {
  TestMac mac(displays);
  for (auto& each : mac.desktop().mac().world.windows) each.frame = {-50, -50, 100, 100};
  for (auto& app : mac.desktop().mac().world.applications) {
    for (auto& element : app.elements) element.frame = simulator::Rect{-50, -50, 100, 100};
  }

  const Result appKit = mac.driver("bg-click Notes -1 -1");
  const Result chromium = mac.driver("bg-click Chat -1 -1");
  const Result move = mac.driver("bg-move Chat -1 -1");

  EXPECT_EQ(seen(appKit), success(R"({"changed":true,"ok":true,"via":"background","window":7})"));
  EXPECT_EQ(seen(chromium), success(R"({"changed":true,"ok":true,"via":"background","window":9})"));
  EXPECT_EQ(seen(move), success(R"({"changed":true,"ok":true,"via":"background","window":9})"));
}

}  // namespace pointer_target_test
