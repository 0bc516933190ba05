#include "capture/choice.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/inside.h"

namespace {

using namespace testing_support;
using driver::Rect;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr platform::Pid notes = 41;
constexpr platform::Pid other = 42;

share::Window windowOf(platform::Pid pid, platform::WindowNumber number, Rect frame,
                       std::optional<std::string> title = "Notes", std::int64_t layer = 0) {
  return {number, frame, std::move(title), layer, share::Owner{pid, "b", "n"}};
}

windowserver::Window entry(std::optional<std::int64_t> number,
                           std::optional<std::string> name = "Notes",
                           std::optional<std::int64_t> layer = 0,
                           std::optional<std::int64_t> owner = notes) {
  windowserver::Window window;
  window.number = number;
  window.name = std::move(name);
  window.layer = layer;
  window.ownerPid = owner;
  return window;
}

std::vector<platform::WindowNumber> numbersOf(const std::vector<share::Window>& windows) {
  std::vector<platform::WindowNumber> numbers;
  for (const share::Window& window : windows) numbers.push_back(window.number);
  return numbers;
}

using Numbers = std::vector<platform::WindowNumber>;

Numbers kept(const std::vector<share::Window>& windows, const Environment& environment = {}) {
  TestMac mac("");
  return valueInside(
      mac, [&] { return numbersOf(driver::keptWindows(windows, notes)); }, environment);
}

TEST(keptWindows, belong_to_the_process) {
  share::Window stray = windowOf(notes, 9, {0, 0, 90, 90});
  stray.owner.reset();

  EXPECT_EQ(kept({windowOf(other, 7, {0, 0, 90, 90}), windowOf(notes, 8, {0, 0, 90, 90}), stray}),
            Numbers{8});
}

TEST(keptWindows, have_a_finite_frame) {
  EXPECT_EQ(kept({windowOf(notes, 6, {nan, 0, 90, 90}), windowOf(notes, 7, {0, 0, nan, 90}),
                  windowOf(notes, 8, {0, 0, std::numeric_limits<double>::infinity(), 90}),
                  windowOf(notes, 9, {0, 0, -90, -90})}),
            Numbers{});
}

TEST(keptWindows, of_no_windows_are_none) { EXPECT_EQ(kept({}), Numbers{}); }

TEST(keptWindows, in_a_scope_put_the_titled_ones_first) {
  EXPECT_EQ(
      kept({windowOf(notes, 6, {0, 0, 50, 50}, std::nullopt),
            windowOf(notes, 7, {0, 0, 90, 90}, "Notes"), windowOf(notes, 8, {0, 0, 50, 50}, ""),
            windowOf(notes, 9, {0, 0, 90, 90}, "notes"), windowOf(notes, 10, {90, 0, 50, 50}, "")},
           {{"CU_WINDOW", "notes"}}),
      (Numbers{7, 9, 6, 8}));
}

/// The number of the main window among windows 6 to 8: two of 100 by 100 points, one of 40 by 40.
platform::WindowNumber mainOf(const std::vector<windowserver::Window>& frontToBack,
                              const Environment& environment = {}) {
  const std::vector<share::Window> windows = {windowOf(notes, 6, {0, 0, 40, 40}),
                                              windowOf(notes, 7, {0, 0, 100, 100}),
                                              windowOf(notes, 8, {0, 0, 100, 100})};
  TestMac mac("");
  return valueInside(
      mac, [&] { return driver::mainWindow(windows, frontToBack, notes).number; }, environment);
}

TEST(mainWindow, is_the_first_entry_that_names_a_large_kept_window) {
  EXPECT_EQ(mainOf({entry(6), entry(8), entry(7)}), 8U);
}

TEST(mainWindow, skips_entries_of_other_processes) {
  EXPECT_EQ(mainOf({entry(8, "Notes", 0, other), entry(8, "Notes", 0, std::nullopt), entry(7)}),
            7U);
}

TEST(mainWindow, skips_entries_whose_layer_is_not_zero_or_missing) {
  EXPECT_EQ(mainOf({entry(8, "Notes", 3), entry(8, "Notes", -1), entry(8, "Notes", std::nullopt),
                    entry(7)}),
            7U);
}

TEST(mainWindow, skips_entries_outside_the_scope_and_without_a_name) {
  EXPECT_EQ(mainOf({entry(8, "Other"), entry(8, std::nullopt), entry(8, ""), entry(7)},
                   {{"CU_WINDOW", "notes"}}),
            7U);
  EXPECT_EQ(mainOf({entry(8, std::nullopt), entry(7)}), 8U);
}

TEST(mainWindow, skips_entries_without_the_number_of_a_kept_window) {
  EXPECT_EQ(mainOf({entry(std::nullopt), entry(99), entry(-8), entry((1LL << 32) + 7), entry(8)}),
            8U);
}

TEST(mainWindow, without_such_an_entry_is_the_first_of_the_largest) {
  EXPECT_EQ(mainOf({}), 7U);
  EXPECT_EQ(mainOf({entry(6)}), 7U);
}

TEST(displayFor, prefers_the_larger_part_then_the_earlier_display) {
  const std::vector<share::Display> displays = {
      {1, {0, 0, 100, 100}}, {2, {100, 0, 100, 100}}, {3, {-100, 0, 100, 100}}};
  const auto number = [&](Rect frame) { return driver::displayFor(frame, displays)->id; };

  EXPECT_EQ(number({10, 10, 50, 50}), 1U);
  EXPECT_EQ(number({90, 10, 50, 50}), 2U);
  EXPECT_EQ(number({75, 10, 50, 50}), 1U);
  EXPECT_EQ(number({-30, 10, 50, 50}), 3U);
  EXPECT_EQ(number({500, 500, 50, 50}), 1U);
  EXPECT_EQ(number({nan, 10, 50, 50}), 1U);
}

TEST(displayFor, gives_none_without_a_display) {
  EXPECT_FALSE(driver::displayFor({0, 0, 10, 10}, {}).has_value());
}

TEST(overlap, is_a_common_area_and_not_an_edge) {
  EXPECT_TRUE(driver::overlap({0, 0, 10, 10}, {9, 9, 10, 10}));
  EXPECT_FALSE(driver::overlap({0, 0, 10, 10}, {10, 0, 10, 10}));
  EXPECT_FALSE(driver::overlap({0, 0, 10, 10}, {0, -10, 10, 10}));
  EXPECT_FALSE(driver::overlap({0, 0, 10, 10}, {5, 5, 0, 0}));
  EXPECT_FALSE(driver::overlap({0, 0, 10, 10}, {5, 5, nan, 1}));
}

TEST(unionOfFrames, surrounds_them_all) {
  EXPECT_EQ(driver::unionOfFrames({windowOf(notes, 6, {10, 20, 30, 40}),
                                   windowOf(notes, 7, {-5, 50, 10, 10}),
                                   windowOf(notes, 8, {20, 30, 5, 5})}),
            (Rect{-5, 20, 45, 40}));
}

TEST(helperCandidates, have_another_owner_a_frame_and_a_low_layer_over_the_area) {
  share::Window stray = windowOf(other, 6, {0, 0, 20, 20});
  stray.owner.reset();
  const std::vector<share::Window> windows = {stray,
                                              windowOf(notes, 7, {0, 0, 20, 20}),
                                              windowOf(other, 8, {0, 0, 20, 20}, "", 19),
                                              windowOf(other, 9, {0, 0, 20, 20}, "", 20),
                                              windowOf(other, 10, {0, 0, 20, 20}, "", -1),
                                              windowOf(other, 11, {0, 0, 19, 20}),
                                              windowOf(other, 12, {nan, 0, 20, 20}),
                                              windowOf(other, 13, {100, 0, 20, 20}),
                                              windowOf(43, 14, {99, 99, 20, 20})};

  EXPECT_EQ(numbersOf(driver::helperCandidates(windows, notes, {0, 0, 100, 100})),
            (Numbers{8, 14}));
}

TEST(helperCandidates, are_never_windows_of_the_own_product) {
  const auto candidates = [](const std::string& bundle) {
    share::Window window = windowOf(other, 8, {0, 0, 20, 20});
    window.owner->bundleIdentifier = bundle;
    return driver::helperCandidates({window}, notes, {0, 0, 100, 100}).size();
  };

  EXPECT_EQ(candidates("com.zentrove.desk.cover"), 0U);
  EXPECT_EQ(candidates("com.zentrove.desk."), 0U);
  EXPECT_EQ(candidates("com.zentrove.desk"), 1U);
  EXPECT_EQ(candidates("com.zentrove.desks.cover"), 1U);
}

}  // namespace
