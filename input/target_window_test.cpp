#include "input/target_window.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/inside.h"

namespace {

using namespace testing_support;

using List = std::vector<windowserver::Window>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// A window of process 41 around the point 50,50.
windowserver::Window plain(std::int64_t number) {
  return {number, 41, 0, std::nullopt, 0.0, 0.0, 100.0, 100.0};
}

/// The window at 50,50 of process 41, as "number x,y widthxheight", in a list that a server gives.
std::string found(const std::optional<List>& list, const Environment& environment = {}) {
  TestMac mac("");
  return valueInside(
      mac,
      [&]() -> std::string {
        const FixedAnswer server(platform::Function::windows, driver::pack(list));
        const auto window = driver::windowAt(41, {50, 50});
        if (!window) return "none";
        const auto& bounds = window->bounds;
        return std::to_string(window->id) + " " + std::to_string(int(bounds.x)) + "," +
               std::to_string(int(bounds.y)) + " " + std::to_string(int(bounds.width)) + "x" +
               std::to_string(int(bounds.height));
      },
      environment);
}

TEST(windowAt, gives_number_and_bounds_of_the_first_hit) {
  windowserver::Window beside = plain(6);
  beside.x = 60;
  windowserver::Window behind = plain(8);
  behind.x = -10;

  EXPECT_EQ(found(List{beside, plain(7), behind}), "7 0,0 100x100");
  EXPECT_EQ(found(List{beside, behind, plain(7)}), "8 -10,0 100x100");
}

TEST(windowAt, asks_for_windows_on_screen_without_the_desktop) {
  TestMac mac("");

  valueInside(mac, [] { return driver::windowAt(41, {50, 50}).has_value(); });

  EXPECT_EQ(callsOf(mac, platform::Function::windows).at(0), "windowserver.windows 17 -> [[]]");
}

TEST(windowAt, skips_windows_of_others_and_of_nobody) {
  windowserver::Window foreign = plain(6);
  foreign.ownerPid = 42;
  windowserver::Window ownerless = plain(8);
  ownerless.ownerPid.reset();

  EXPECT_EQ(found(List{foreign, ownerless, plain(7)}), "7 0,0 100x100");
  EXPECT_EQ(found(List{foreign, ownerless}), "none");
}

TEST(windowAt, takes_a_missing_layer_for_a_normal_one_and_skips_1000_and_above) {
  windowserver::Window layerless = plain(6);
  layerless.layer.reset();
  windowserver::Window high = plain(8);
  high.layer = 1000;
  windowserver::Window below = plain(9);
  below.layer = 999;

  EXPECT_EQ(found(List{layerless, plain(7)}), "6 0,0 100x100");
  EXPECT_EQ(found(List{high, plain(7)}), "7 0,0 100x100");
  EXPECT_EQ(found(List{below, plain(7)}), "9 0,0 100x100");
}

TEST(windowAt, skips_titles_outside_the_scope_but_no_window_without_one) {
  windowserver::Window titled = plain(6);
  titled.name = "Other";
  windowserver::Window empty = plain(8);
  empty.name = "";
  const Environment scope = {{"CU_WINDOW", "notes"}};

  EXPECT_EQ(found(List{titled, plain(7)}, scope), "7 0,0 100x100");
  EXPECT_EQ(found(List{titled, empty, plain(7)}, scope), "8 0,0 100x100");
  titled.name = "Draft — NOTES";
  EXPECT_EQ(found(List{titled, plain(7)}, scope), "6 0,0 100x100");
}

TEST(windowAt, skips_windows_without_finite_bounds) {
  List list(7, plain(6));
  list[0].x.reset();
  list[1].y.reset();
  list[2].width.reset();
  list[3].height.reset();
  list[4].x = nan;
  list[5].height = std::numeric_limits<double>::infinity();
  list[6].width = 0;

  EXPECT_EQ(found(list), "none");
  list.push_back(plain(7));
  EXPECT_EQ(found(list), "7 0,0 100x100");
}

TEST(windowAt, has_no_substitute_for_a_hit_without_a_usable_number) {
  for (const std::optional<std::int64_t> number :
       {std::optional<std::int64_t>(), std::optional<std::int64_t>(0),
        std::optional<std::int64_t>(-1), std::optional<std::int64_t>(1LL << 32)}) {
    windowserver::Window nameless = plain(0);
    nameless.number = number;

    EXPECT_EQ(found(List{nameless, plain(7)}), "none");
  }
  EXPECT_EQ(found(List{plain(4294967295)}), "4294967295 0,0 100x100");
}

TEST(windowAt, is_none_without_a_list) {
  EXPECT_EQ(found(std::nullopt), "none");
  EXPECT_EQ(found(List{}), "none");
}

}  // namespace
