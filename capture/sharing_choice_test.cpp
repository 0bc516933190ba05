#include "capture/choice.h"

#include <gtest/gtest.h>

#include <limits>

#include "main/globals.h"

namespace driver {
namespace {

ListedWindow entry(std::int64_t number, double width, double height, std::int64_t layer = 0) {
  return {number, layer, "", {0, 0, width, height}};
}

TEST(main_window_number, is_that_of_the_frontmost_with_a_quarter_of_the_largest_area) {
  EXPECT_EQ(mainWindowNumber({entry(1, 100, 100), entry(2, 400, 100), entry(3, 400, 101)}), 2);
  EXPECT_EQ(mainWindowNumber({entry(1, 100, 100), entry(2, 200, 200)}), 1);
  EXPECT_EQ(mainWindowNumber({entry(1, 100, 99), entry(2, 200, 200)}), 2);
}

TEST(main_window_number, leaves_out_other_layers) {
  EXPECT_EQ(mainWindowNumber({entry(1, 900, 900, 3), entry(2, 50, 50)}), 2);
  EXPECT_EQ(mainWindowNumber({entry(1, 900, 900, 3)}), std::nullopt);
}

TEST(main_window_number, is_none_without_windows) { EXPECT_EQ(mainWindowNumber({}), std::nullopt); }

TEST(main_window_number, is_0_for_a_window_that_has_none) {
  EXPECT_EQ(mainWindowNumber({entry(0, 9, 9), entry(2, 9, 9)}), 0);
}

share::Window window(platform::WindowNumber number, platform::Pid owner, Rect frame,
                     std::optional<std::string> title = "Inbox", std::int64_t layer = 0) {
  return {number, frame, std::move(title), layer, share::Owner{owner, "", ""}};
}

TEST(shared_window, is_found_by_number_and_process) {
  share::Window ownerless = window(7, 41, {0, 0, 100, 100});
  ownerless.owner.reset();
  const std::vector<share::Window> windows = {ownerless, window(7, 40, {0, 0, 100, 100}),
                                              window(7, 41, {0, 0, 1, 1}),
                                              window(7, 41, {0, 0, 100, 100})};
  EXPECT_EQ(sharedWindow(windows, 7, 41), &windows[2]);
  EXPECT_EQ(sharedWindow(windows, 8, 41), nullptr);
}

class largest_shared_window : public testing::Test {
 protected:
  // Only the window scope is asked for.
  largest_shared_window() {
    renewGlobals();
    initialise({"driver", "inside"});
  }

  static platform::WindowNumber largestOf(const std::vector<share::Window>& windows) {
    const share::Window* largest = largestSharedWindow(windows, 41);
    return largest == nullptr ? 0 : largest->number;
  }
};

TEST_F(largest_shared_window, is_the_first_of_equals) {
  EXPECT_EQ(largestOf({window(1, 41, {0, 0, 100, 100}), window(2, 41, {0, 0, 200, 100}),
                       window(3, 41, {0, 0, 100, 200})}),
            2U);
}

TEST_F(largest_shared_window, leaves_out_slivers_other_layers_and_other_processes) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(largestOf({window(1, 41, {0, 0, 39, 900}), window(2, 41, {0, 0, 900, 39}),
                       window(3, 40, {0, 0, 900, 900}), window(4, 41, {0, 0, 900, 900}, "x", 3),
                       window(5, 41, {0, 0, nan, 900})}),
            0U);
  EXPECT_EQ(largestOf({window(1, 41, {0, 0, 40, 40}, std::nullopt)}), 1U);
}

TEST_F(largest_shared_window, keeps_to_the_scope) {
  globals().windowScope = "drafts";
  EXPECT_EQ(largestOf({window(1, 41, {0, 0, 900, 900}), window(2, 41, {0, 0, 90, 90}, "Drafts"),
                       window(3, 41, {0, 0, 900, 900}, std::nullopt)}),
            2U);
}

}  // namespace
}  // namespace driver
