#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/captured.h"
#include "tests/support/simulated_run.h"
#include "tests/support/temporary_folder.h"

/// The windows of other processes that a capture shows.
namespace capture_helpers_test {

using namespace testing_support;

constexpr platform::Rect inbox{100, 80, 400, 300};

Result captured(const std::string& more, std::vector<std::string> faults = {}) {
  TestMac mac(R"(
    display 1 1440x900 scale 1
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 400x300
)" + more,
              std::move(faults));
  const TemporaryFolder folder;
  return mac.driver("capture Notes " + folder.path("out.png"));
}

/// A helper with one window over the application's.
std::string helper(const std::string& application, const std::string& window = "") {
  return "    app " + application + "\n        window 12 \"Candidates\" at 450,100 " +
         (window.empty() ? "size 100x50 layer 3" : window) + "\n";
}

Captured with(const platform::Rect& rect, CapturedWindow window) {
  return {rect, 7, inbox, {{"Inbox", inbox}, std::move(window)}};
}

CapturedWindow candidates(const std::string& bundle, std::int64_t layer = 3) {
  return {"Candidates", {450, 100, 100, 50}, layer, "Input", bundle};
}

const Captured alone{inbox, 7, inbox, {{"Inbox", inbox}}};
constexpr platform::Rect wider{100, 80, 450, 300};

TEST(captured_helpers, of_accessory_and_background_processes_are_drawn) {
  for (const char* policy : {"accessory", "prohibited"}) {
    SCOPED_TRACE(policy);
    EXPECT_EQ(
        seen(captured(helper("Input pid 50 bundle com.example.input " + std::string(policy)))),
        success(with(wider, candidates("com.example.input"))));
  }
}

TEST(captured_helpers, of_regular_applications_are_not_drawn) {
  EXPECT_EQ(seen(captured(helper("Input pid 50 bundle com.example.input"))), success(alone));
}

TEST(captured_helpers, of_a_process_that_cannot_be_looked_up_are_drawn) {
  EXPECT_EQ(seen(captured(helper("Input pid 50 bundle com.example.input"),
                          {"workspace.activation-policy 1 absent"})),
            success(with(wider, candidates("com.example.input"))));
}

TEST(captured_helpers, without_a_bundle_identifier_are_drawn) {
  EXPECT_EQ(seen(captured(helper("Input pid 50 accessory unbundled"))),
            success(with(wider, candidates(""))));
}

TEST(captured_helpers, of_the_own_product_are_never_drawn) {
  for (const char* bundle : {"com.zentrove.desk.cover", "com.zentrove.desk."}) {
    SCOPED_TRACE(bundle);
    EXPECT_EQ(seen(captured(helper("Input pid 50 accessory bundle " + std::string(bundle)))),
              success(alone));
  }
}

TEST(captured_helpers, whose_identifier_only_looks_like_the_own_are_drawn) {
  for (const char* bundle : {"com.zentrove.desk", "com.zentrove.desktop.x", "COM.zentrove.desk.x",
                             "x.com.zentrove.desk.y"}) {
    SCOPED_TRACE(bundle);
    EXPECT_EQ(seen(captured(helper("Input pid 50 accessory bundle " + std::string(bundle)))),
              success(with(wider, candidates(bundle))));
  }
}

TEST(captured_helpers, lie_on_layers_0_to_19) {
  for (const std::int64_t layer : {0, 19}) {
    SCOPED_TRACE(layer);
    const Captured expected = with(wider, candidates("b", layer));
    EXPECT_EQ(seen(captured(helper("Input pid 50 accessory bundle b",
                                   "size 100x50 layer " + std::to_string(layer)))),
              success(expected));
  }
  for (const std::int64_t layer : {-1, 20, 25, 1000}) {
    SCOPED_TRACE(layer);
    EXPECT_EQ(seen(captured(helper("Input pid 50 accessory bundle b",
                                   "size 100x50 layer " + std::to_string(layer)))),
              success(alone));
  }
}

TEST(captured_helpers, are_at_least_20_by_20_points) {
  Captured small = with(inbox, candidates("b"));
  small.windows[1].frame = {450, 100, 20, 20};
  EXPECT_EQ(seen(captured(helper("Input pid 50 accessory bundle b", "size 20x20 layer 3"))),
            success(small));
  for (const char* size : {"size 19x50 layer 3", "size 100x19.5 layer 3"}) {
    SCOPED_TRACE(size);
    EXPECT_EQ(seen(captured(helper("Input pid 50 accessory bundle b", size))), success(alone));
  }
}

TEST(captured_helpers, share_some_area_with_the_applications_windows) {
  const std::string touching =
      "    app Input pid 50 accessory bundle b\n        window 12 at 500,100 size 100x50 layer 3\n";

  EXPECT_EQ(seen(captured(touching)), success(alone));
}

TEST(captured_helpers, over_the_gap_between_two_windows_are_drawn) {
  const Result run = captured(
      "        window 8 \"Other\" at 900,80 size 100x100\n"
      "    app Input pid 50 accessory bundle b\n        window 12 at 600,90 size 50x50 layer 3\n");

  EXPECT_EQ(seen(run), success(Captured{{100, 80, 900, 300},
                                        7,
                                        inbox,
                                        {{"Inbox", inbox},
                                         {"Other", {900, 80, 100, 100}},
                                         {"", {600, 90, 50, 50}, 3, "Input", "b"}}}));
}

TEST(captured_helpers, do_not_bring_in_others) {
  const Result run = captured(
      "    app Input pid 50 accessory bundle b\n"
      "        window 12 at 450,100 size 100x50 layer 3\n"
      "        window 13 at 540,100 size 100x50 layer 3\n");

  EXPECT_EQ(seen(run),
            success(Captured{
                wider, 7, inbox, {{"Inbox", inbox}, {"", {450, 100, 100, 50}, 3, "Input", "b"}}}));
}

TEST(captured_helpers, come_after_the_applications_windows_in_the_systems_order) {
  const Result run = captured(
      "    app Input pid 50 accessory bundle b\n"
      "        window 12 \"Low\" at 450,100 size 50x50 layer 3\n"
      "        window 13 \"High\" at 450,100 size 50x50 layer 8\n"
      "    app Menu pid 51 accessory bundle m\n"
      "        window 14 \"Middle\" at 450,100 size 50x50 layer 5\n");

  EXPECT_EQ(seen(run), success(Captured{inbox,
                                        7,
                                        inbox,
                                        {{"Inbox", inbox},
                                         {"High", {450, 100, 50, 50}, 8, "Input", "b"},
                                         {"Middle", {450, 100, 50, 50}, 5, "Menu", "m"},
                                         {"Low", {450, 100, 50, 50}, 3, "Input", "b"}}}));
}

TEST(captured_helpers, of_one_process_are_asked_for_once) {
  TestMac mac(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 400x300
    app Input pid 50 accessory
        window 12 at 450,100 size 50x50 layer 3
        window 13 at 450,100 size 50x50 layer 3
    app Browser pid 40
        window 5 at 100,80 size 400x300
        window 6 at 100,80 size 400x300
)");
  const TemporaryFolder folder;

  const Result run = mac.driver("capture Notes " + folder.path("out.png"));

  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "workspace.activation-policy"), 2);
}

TEST(captured_helpers, ignore_the_window_scope) {
  TestMac mac(R"(
    display 1 1440x900 scale 1
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 400x300
)" + helper("Input pid 50 accessory bundle b"));
  const TemporaryFolder folder;

  const Result run =
      mac.driver("capture Notes " + folder.path("out.png"), {{"CU_WINDOW", "inbox"}});

  EXPECT_EQ(seen(run), success(with(wider, candidates("b"))));
}

}  // namespace capture_helpers_test
