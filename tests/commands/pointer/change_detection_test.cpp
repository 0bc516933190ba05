#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/posted_events.h"
#include "tests/support/simulated_run.h"

/// How long a pointer command watches for a change, and what it takes for one.
namespace change_detection_test {

using namespace testing_support;

/// A button without effect, in a window with a text field. More lines may follow.
std::string deskWith(const std::string& script) {
  return R"(
    display 1 1440x900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Still" at 120,90 size 60x20
            AXTextField "Name" at 120,130 size 200x20 value "Ada"
)" + script;
}

const std::string changed = success(R"({"changed":true,"ok":true,"via":"background","window":7})");
const std::string unchanged =
    success(R"({"changed":false,"ok":true,"via":"background","window":7})");

TEST(change_detection, gives_up_after_three_rounds_of_200_ms) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), unchanged);
  EXPECT_EQ(run.elapsed, 984'000);
  EXPECT_EQ(waits(mac),
            "40000 12000 15000 12000 1000 12000 100000 12000 15000 12000 1000 12000 100000 40000 "
            "200000 200000 200000");
}

TEST(change_detection, ends_with_the_round_that_sees_a_change) {
  const std::pair<const char*, std::int64_t> cases[] = {{"    at 583999us quit Notes\n", 584'000},
                                                        {"    at 584001us quit Notes\n", 784'000},
                                                        {"    at 783999us quit Notes\n", 784'000},
                                                        {"    at 784001us quit Notes\n", 984'000},
                                                        {"    at 983999us quit Notes\n", 984'000}};
  for (const auto& [script, elapsed] : cases) {
    SCOPED_TRACE(script);
    TestMac mac(deskWith(script));

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), changed);
    EXPECT_EQ(run.elapsed, elapsed);
  }
}

TEST(change_detection, misses_what_happens_after_the_third_round) {
  TestMac mac(deskWith("    at 984001us quit Notes\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), unchanged);
  EXPECT_EQ(run.elapsed, 984'000);
}

TEST(change_detection, counts_a_missing_before_image_as_a_change) {
  for (const char* fault : {"share.content 1 thrown", "share.screenshot 1 thrown",
                            "image.pixels 1 absent", "share.content 1 empty"}) {
    SCOPED_TRACE(fault);
    TestMac mac(deskWith(""), {fault});

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), changed);
    EXPECT_EQ(run.elapsed, 584'000);
  }
}

TEST(change_detection, counts_a_missing_after_image_as_a_change) {
  for (const char* fault : {"share.content 3 thrown", "share.screenshot 3 thrown",
                            "image.pixels 3 absent", "share.content 3 empty"}) {
    SCOPED_TRACE(fault);
    TestMac mac(deskWith(""), {fault});

    const Result run = mac.driver("bg-click Notes 130 95");

    EXPECT_EQ(seen(run), changed);
    EXPECT_EQ(run.elapsed, 784'000);
  }
}

TEST(change_detection, works_without_the_permission_to_record_the_screen) {
  TestMac mac(deskWith("    deny screen-recording\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(change_detection, does_not_read_the_focus_when_the_images_differ) {
  TestMac mac(deskWith("    at 500ms front Notes\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.attributes"), 1);
}

TEST(change_detection, sees_a_change_of_the_selection_alone) {
  TestMac mac(R"(
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Still" at 120,90 size 60x20 press: set Elsewhere "Ada L"
        window 8 "Other" at 1000,80 size 300x300
            AXTextField "Elsewhere" at 1020,130 size 200x20 value "Ada" focused
)");

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(change_detection, compares_with_the_focus_read_before_the_input) {
  // The application stops answering only once the first signature has been taken.
  TestMac mac(deskWith("    at 10ms hang Notes\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed);
  EXPECT_EQ(run.elapsed, 6'584'000);
}

TEST(change_detection, waits_at_most_two_time_outs_for_an_application_that_hangs) {
  TestMac mac(deskWith("    at 0ms hang Notes\n"));

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), unchanged);
  EXPECT_EQ(run.elapsed, 2 * 6'000'000 + 984'000);
}

TEST(change_detection, takes_404_ms_in_front_and_804_without_a_change) {
  TestMac quick(deskWith("    at 0ms front Notes\n    at 300ms quit Notes\n"));
  TestMac slow(deskWith("    at 0ms front Notes\n"));

  const Result seenAtOnce = quick.driver("bg-click Notes 130 95");
  const Result seenNever = slow.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(seenAtOnce), changed);
  EXPECT_EQ(seenAtOnce.elapsed, 404'000);
  EXPECT_EQ(seen(seenNever), unchanged);
  EXPECT_EQ(seenNever.elapsed, 804'000);
}

TEST(change_detection, takes_509_ms_for_a_double_click_in_front) {
  TestMac quick(deskWith("    at 0ms front Notes\n    at 400ms quit Notes\n"));
  TestMac slow(deskWith("    at 0ms front Notes\n"));

  EXPECT_EQ(quick.driver("bg-click Notes 130 95 left 2").elapsed, 509'000);
  EXPECT_EQ(slow.driver("bg-click Notes 130 95 left 2").elapsed, 909'000);
}

}  // namespace change_detection_test
