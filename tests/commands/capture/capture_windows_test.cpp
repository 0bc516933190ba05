#include <gtest/gtest.h>

#include "tests/support/captured.h"
#include "tests/support/simulated_run.h"
#include "tests/support/temporary_folder.h"

/// Which windows of the application a capture shows, and which of them is its anchor.
namespace capture_windows_test {

using namespace testing_support;

/// Notes with the windows given, one line each, front to back.
std::string notesWith(const std::vector<std::string>& windows) {
  std::string world =
      "    display 1 1440x900 scale 1\n    app Notes pid 41 bundle com.example.notes\n";
  for (const std::string& window : windows) world += "        window " + window + "\n";
  return world;
}

Result captured(const std::string& world, const Environment& environment = {},
                std::vector<std::string> faults = {}) {
  TestMac mac(world, std::move(faults));
  const TemporaryFolder folder;
  return mac.driver("capture Notes " + folder.path("out.png"), environment);
}

const Environment notes = {{"CU_WINDOW", "Notes"}};

TEST(captured_windows, are_at_least_40_by_40_points_below_layer_1000) {
  const Result run = captured(
      notesWith({"6 \"Shield\" at 0,0 size 90x90 layer 1000",
                 "7 \"High\" at 0,0 size 50x50 layer 999", "8 \"Low\" at 0,0 size 40x40 layer -5",
                 "9 \"Narrow\" at 0,0 size 39x90", "10 \"Flat\" at 0,0 size 90x39"}));

  EXPECT_EQ(seen(run),
            success(Captured{{0, 0, 50, 50},
                             7,
                             {0, 0, 50, 50},
                             {{"High", {0, 0, 50, 50}, 999}, {"Low", {0, 0, 40, 40}, -5}}}));
}

TEST(captured_windows, without_a_scope_are_all_in_the_systems_order) {
  const Result run = captured(notesWith(
      {"6 \"A\" at 0,0 size 50x50", "7 at 200,0 size 50x50", "8 \"B\" at 100,0 size 50x50"}));

  EXPECT_EQ(
      seen(run),
      success(Captured{{0, 0, 250, 50},
                       6,
                       {0, 0, 50, 50},
                       {{"A", {0, 0, 50, 50}}, {"", {200, 0, 50, 50}}, {"B", {100, 0, 50, 50}}}}));
}

TEST(captured_windows, in_a_scope_have_a_title_in_it_or_lie_untitled_over_one_that_has) {
  const Result run =
      captured(notesWith({"6 at 150,100 size 50x50", "7 \"\" at 90,90 size 50x50",
                          "8 \"Notes\" at 100,100 size 100x100", "9 at 500,500 size 50x50",
                          "10 \"Other\" at 100,100 size 100x100", "11 at 200,100 size 50x50"}),
               notes);

  // The untitled ones come after all titled ones. One that only touches is elsewhere.
  EXPECT_EQ(
      seen(run),
      success(Captured{
          {90, 90, 110, 110},
          8,
          {100, 100, 100, 100},
          {{"Notes", {100, 100, 100, 100}}, {"", {150, 100, 50, 50}}, {"", {90, 90, 50, 50}}}}));
}

TEST(captured_windows, that_are_untitled_do_not_bring_in_others) {
  const Result run = captured(notesWith({"6 \"Notes\" at 100,100 size 100x100",
                                         "7 at 190,100 size 50x50", "8 at 230,100 size 50x50"}),
                              notes);

  EXPECT_EQ(seen(run),
            success(Captured{{100, 100, 140, 100},
                             6,
                             {100, 100, 100, 100},
                             {{"Notes", {100, 100, 100, 100}}, {"", {190, 100, 50, 50}}}}));
}

TEST(captured_windows, in_a_scope_that_no_window_has_are_none) {
  const Result run = captured(
      notesWith({"6 \"Other\" at 100,100 size 100x100", "7 at 100,100 size 50x50"}), notes);

  EXPECT_EQ(seen(run), success(R"({"ok":true,"rect":null,"running":true,"windows":[]})"));
}

TEST(captured_windows, in_a_scope_match_a_piece_of_the_title) {
  const Result run = captured(notesWith({"6 \"Draft — NOTES\" at 100,100 size 100x100",
                                         "7 \"My Notes\" at 0,0 size 90x90"}),
                              notes);

  EXPECT_EQ(seen(run), success(Captured{{100, 100, 100, 100},
                                        6,
                                        {100, 100, 100, 100},
                                        {{"Draft — NOTES", {100, 100, 100, 100}}}}));
}

/// The number of the anchor window.
std::string anchor(const Result& run) {
  const auto at = run.output.find("\"id\":");
  return at == std::string::npos ? seen(run)
                                 : run.output.substr(at + 5, run.output.find(',', at) - at - 5);
}

TEST(captured_anchor, is_the_frontmost_normal_window_that_is_large_enough) {
  EXPECT_EQ(anchor(captured(notesWith(
                {"6 \"Front\" at 0,0 size 100x100", "7 \"Back\" at 200,0 size 100x100"}))),
            "6");
}

TEST(captured_anchor, has_at_least_a_quarter_of_the_largest_normal_windows_area) {
  EXPECT_EQ(anchor(captured(notesWith(
                {"6 \"Palette\" at 0,0 size 100x100", "7 \"Document\" at 200,0 size 200x200"}))),
            "6");
  EXPECT_EQ(anchor(captured(notesWith(
                {"6 \"Palette\" at 0,0 size 99.5x100", "7 \"Document\" at 200,0 size 200x200"}))),
            "7");
}

TEST(captured_anchor, does_not_depend_on_the_size_of_windows_of_other_layers) {
  EXPECT_EQ(anchor(captured(
                notesWith({"6 \"Panel\" at 0,0 size 800x800 layer 3",
                           "7 \"Small\" at 0,0 size 50x50", "8 \"Larger\" at 0,0 size 90x90"}))),
            "7");
}

TEST(captured_anchor, does_not_depend_on_windows_outside_the_scope) {
  EXPECT_EQ(anchor(captured(notesWith({"6 \"Other\" at 0,0 size 800x800", "7 at 0,0 size 60x60",
                                       "8 \"Notes\" at 0,0 size 50x50"}),
                            notes)),
            "8");
}

TEST(captured_anchor, is_passed_over_when_it_cannot_be_captured) {
  EXPECT_EQ(anchor(captured(notesWith({"6 \"Secret\" at 0,0 size 100x100 not-capturable",
                                       "7 \"Plain\" at 200,0 size 100x100"}))),
            "7");
}

TEST(captured_anchor, without_a_window_list_is_the_largest_normal_window) {
  for (const char* fault : {"windowserver.windows 1 absent", "windowserver.windows 1 empty",
                            "windowserver.windows 1 wrong"}) {
    SCOPED_TRACE(fault);
    const auto fallback = [&](const std::vector<std::string>& windows) {
      return anchor(captured(notesWith(windows), {}, {fault}));
    };
    EXPECT_EQ(fallback({"6 \"A\" at 0,0 size 50x50", "7 \"B\" at 0,0 size 60x60"}), "7");
    EXPECT_EQ(fallback({"6 \"A\" at 0,0 size 60x60", "7 \"B\" at 0,0 size 60x60"}), "6");
    EXPECT_EQ(fallback({"6 \"A\" at 0,0 size 90x90 layer 3", "7 \"B\" at 0,0 size 50x50"}), "7");
    EXPECT_EQ(fallback({"6 \"A\" at 0,0 size 50x50", "7 \"B\" at 0,0 size 90x90 layer -1"}), "6");
  }
}

TEST(captured_anchor, without_a_normal_window_is_the_largest) {
  EXPECT_EQ(anchor(captured(
                notesWith({"6 \"A\" at 0,0 size 50x50 layer 3", "7 \"B\" at 0,0 size 60x60 layer 2",
                           "8 \"C\" at 0,0 size 60x60 layer 1"}))),
            "7");
}

}  // namespace capture_windows_test
