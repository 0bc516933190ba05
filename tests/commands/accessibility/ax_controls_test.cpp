#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "reveal", "ax-popup-items" and "ax-slider".
namespace ax_controls_test {

using namespace testing_support;

std::string inWindow(const std::string& lines, const std::string& application = "") {
  return R"(
    display 1 1440x900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41 )" +
         application + R"(
        window 7 "Inbox" at 100,80 size 800x600
)" + lines;
}

const std::string enabling = R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
)";

std::string revealed(const std::string& did, int windows) {
  return success(R"({"did":[)" + did + R"(],"ok":true,"windows":)" + std::to_string(windows) + "}");
}

std::string refused(const std::string& error) {
  return success(R"({"error":")" + error + R"(","ok":false})");
}

const bool* minimized(const TestMac& mac, std::size_t element) {
  const auto& attributes = mac.world().applications[1].elements[element].attributes;
  const auto found = attributes.find("AXMinimized");
  return found == attributes.end() ? nullptr : std::get_if<bool>(&found->second);
}

TEST(reveal, does_nothing_where_all_is_visible) {
  TestMac mac(inWindow(""));
  const Result run = mac.driver("reveal Notes");
  EXPECT_EQ(seen(run), revealed("", 1));
  EXPECT_EQ(run.effects, enabling);
  EXPECT_EQ(run.elapsed, 0);
}

TEST(reveal, shows_a_hidden_application_without_bringing_it_to_front) {
  TestMac mac(inWindow("", "hidden"));
  EXPECT_EQ(seen(mac.driver("reveal Notes")), revealed(R"("unhid")", 1));
  EXPECT_FALSE(mac.world().applications[1].hidden);
  EXPECT_EQ(mac.world().frontmost, 40);
}

TEST(reveal, says_nothing_of_an_application_that_stays_hidden) {
  TestMac mac(inWindow("", "hidden"), {"workspace.unhide 1 refused"});
  EXPECT_EQ(seen(mac.driver("reveal Notes")), revealed("", 1));
}

TEST(reveal, brings_back_the_first_window_when_all_are_minimized) {
  TestMac mac(R"(
    display 1 1440x900
    app Browser pid 40 frontmost
    app Notes pid 41 hidden
        window 7 "My \"Inbox\"" at 100,80 size 800x600 minimized
        window 8 "Archive" at 100,80 size 800x600 minimized
)");
  EXPECT_EQ(seen(mac.driver("reveal Notes")),
            revealed(R"("unhid","unminimized \"My \"Inbox\"\"")", 2));
  EXPECT_FALSE(*minimized(mac, 0));
  EXPECT_TRUE(*minimized(mac, 1));
  EXPECT_EQ(mac.world().frontmost, 40);
}

TEST(reveal, brings_back_none_beside_a_normal_window) {
  TestMac mac(inWindow("        window 8 \"Archive\" at 0,0 size 90x90 minimized\n"));
  EXPECT_EQ(seen(mac.driver("reveal Notes")), revealed("", 2));
  EXPECT_TRUE(*minimized(mac, 1));
}

TEST(reveal, judges_the_windows_in_scope_alone) {
  TestMac mac(inWindow("        window 8 \"Archive\" at 0,0 size 90x90 minimized\n"));
  EXPECT_EQ(seen(mac.driver("reveal Notes", {{"CU_WINDOW", "archive"}})),
            revealed(R"("unminimized \"Archive\"")", 1));
  EXPECT_EQ(seen(mac.driver("reveal Notes", {{"CU_WINDOW", "nowhere"}})), revealed("", 0));
}

TEST(reveal, does_not_claim_what_a_window_refuses) {
  TestMac mac(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600 minimized
)",
              {"ax.set-attribute 3 error -25200"});
  EXPECT_EQ(seen(mac.driver("reveal Notes")), revealed("", 1));
}

TEST(reveal, needs_a_running_application) {
  TestMac mac(inWindow(""));
  const Result run = mac.driver("reveal Nobody");
  EXPECT_EQ(seen(run), refused("app not running"));
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(seen(mac.driver("reveal")), failure("usage: reveal <app>"));
}

std::string item(const std::string& label, const std::string& texts) {
  return R"({"label":")" + label + R"(","role":"AXMenuItem","texts":[)" + texts + "]}";
}

TEST(ax_popup_items, are_listed_in_reading_order_with_their_texts_level_by_level) {
  TestMac mac(inWindow(R"(            AXMenu
                AXMenuItem "One"
                    AXGroup
                        AXStaticText value "deep"
                    AXStaticText value "first"
                    AXStaticText value ""
                    AXStaticText value 3
                    AXButton value "no"
                    AXStaticText value "second"
                AXMenuItem "Two"
                    AXMenuItem "Inner"
                        AXStaticText value "text"
        window 8 "Archive" at 0,0 size 90x90
            AXMenuItem "Three"
)"));

  const Result run = mac.driver("ax-popup-items Notes");

  EXPECT_EQ(seen(run), success(R"({"items":[)" + item("One", R"("first","second","deep")") + "," +
                               item("Two", R"("text")") + "," + item("Inner", R"("text")") + "," +
                               item("Three", "") + R"(],"ok":true})"));
  EXPECT_EQ(run.effects, enabling);
  EXPECT_EQ(seen(mac.driver("ax-popup-items Notes", {{"CU_WINDOW", "archive"}})),
            success(R"({"items":[)" + item("Three", "") + R"(],"ok":true})"));
}

TEST(ax_popup_items, are_described_with_value_and_frame) {
  TestMac mac(inWindow("            AXMenuItem \"One\" at 1,2 size 3x4 value \"v\"\n"));
  EXPECT_EQ(seen(mac.driver("ax-popup-items Notes")),
            success(R"({"items":[{"frame":{"height":4,"width":3,"x":1,"y":2},"label":"One",)"
                    R"("role":"AXMenuItem","texts":[],"value":"v"}],"ok":true})"));
}

TEST(ax_popup_items, are_found_60_levels_deep) {
  for (const std::size_t groups : {59U, 60U}) {
    std::string lines;
    std::string indent = "            ";
    for (std::size_t i = 0; i < groups; ++i, indent += " ") lines += indent + "AXGroup\n";
    TestMac mac(inWindow(lines + indent + "AXMenuItem \"One\"\n"));
    EXPECT_EQ(seen(mac.driver("ax-popup-items Notes")),
              success(R"({"items":[)" + (groups == 60 ? "" : item("One", "")) + R"(],"ok":true})"));
  }
}

TEST(ax_popup_items, have_the_texts_of_60_levels) {
  std::string lines = "            AXMenuItem \"One\"\n";
  std::string indent = "                ";
  for (int level = 1; level < 60; ++level, indent += " ") lines += indent + "AXGroup\n";
  lines += indent + "AXStaticText value \"in\"\n" + indent + "AXGroup\n" + indent +
           " AXStaticText value \"beyond\"\n";
  TestMac mac(inWindow(lines));
  EXPECT_EQ(seen(mac.driver("ax-popup-items Notes")),
            success(R"({"items":[)" + item("One", R"("in")") + R"(],"ok":true})"));
}

TEST(ax_popup_items, have_the_texts_of_20000_elements_together) {
  const auto textBehind = [](int others) {
    TestMac mac(inWindow("            AXMenuItem \"One\"\n                AXGroup repeat " +
                         std::to_string(others) +
                         "\n                AXGroup\n"
                         "                    AXStaticText value \"text\"\n"));
    return seen(mac.driver("ax-popup-items Notes"));
  };
  EXPECT_EQ(textBehind(19'998),
            success(R"({"items":[)" + item("One", R"("text")") + R"(],"ok":true})"));
  EXPECT_EQ(textBehind(19'999), success(R"({"items":[)" + item("One", "") + R"(],"ok":true})"));
}

TEST(ax_popup_items, need_an_application) {
  TestMac mac(inWindow(""));
  EXPECT_EQ(seen(mac.driver("ax-popup-items Notes")), success(R"({"items":[],"ok":true})"));
  EXPECT_EQ(seen(mac.driver("ax-popup-items")), failure("usage: ax-popup-items <app>"));
  EXPECT_EQ(seen(mac.driver("ax-popup-items Nobody")), failure("app not running: Nobody"));
}

const std::string size =
    R"(            AXSlider "Size" at 120,90 size 100x20 value 6 range 0..24 step 2.5
)";

TEST(ax_slider, reads_where_it_stands) {
  TestMac mac(inWindow(size));
  const Result run = mac.driver("ax-slider Notes Size");
  EXPECT_EQ(seen(run), success(R"({"max":24,"min":0,"ok":true,"value":6})"));
  EXPECT_EQ(run.elapsed, 0);
  EXPECT_EQ(run.effects, enabling);
}

TEST(ax_slider, tells_only_numbers) {
  TestMac mac(inWindow("            AXSlider \"Size\" value \"6\" attribute AXMinValue true\n"));
  EXPECT_EQ(seen(mac.driver("ax-slider Notes Size")), success(R"({"ok":true})"));
}

TEST(ax_slider, moves_by_a_step_and_reads_300_ms_later) {
  for (const bool up : {true, false}) {
    TestMac mac(inWindow(size));
    const Result run =
        mac.driver(up ? "ax-slider Notes Size increment" : "ax-slider Notes Size decrement");
    EXPECT_EQ(seen(run),
              success(std::string(R"({"axError":0,"max":24,"min":0,"ok":true,"value":)") +
                      (up ? "8.5}" : "3.5}")));
    EXPECT_EQ(run.elapsed, 300'000);
  }
}

TEST(ax_slider, takes_a_number_and_reads_what_became_of_it) {
  const std::pair<const char*, const char*> cases[] = {
      {"7.25", "7.25"}, {"-3", "0"}, {"1e3", "24"}, {"8", "8"}};
  for (const auto& [word, value] : cases) {
    TestMac mac(inWindow(size));
    const Result run = mac.driver("ax-slider Notes Size " + std::string(word));
    EXPECT_EQ(seen(run),
              success(R"({"max":24,"min":0,"ok":true,"value":)" + std::string(value) + "}"));
    EXPECT_EQ(run.elapsed, 300'000);
    EXPECT_EQ(run.effects, enabling + "    0 ms  write 41/7 AXValue of AXSlider \"Size\" " +
                               std::string(word == std::string("1e3") ? "1000" : word) + "\n");
  }
}

TEST(ax_slider, that_refuses_is_read_all_the_same) {
  TestMac mac(inWindow("            AXSlider \"Size\" value 6 rejects AXValue replying -25204\n"));
  EXPECT_EQ(seen(mac.driver("ax-slider Notes Size 7")), success(R"({"ok":false,"value":6})"));
  TestMac still(inWindow("            AXSlider \"Size\" value 6 actions none\n"));
  EXPECT_EQ(seen(still.driver("ax-slider Notes Size increment")),
            success(R"({"axError":-25206,"ok":false,"value":6})"));
}

TEST(ax_slider, fails_for_any_other_word) {
  for (const char* word : {"up", "Increment", "increment ", "", "7x", "nan", "inf", "1,5"}) {
    TestMac mac(inWindow(size));
    const Result run = mac.driverWith({"ax-slider", "Notes", "Size", word});
    EXPECT_EQ(seen(run), failure("not a number: " + std::string(word)));
    EXPECT_EQ(run.effects, enabling);
    EXPECT_EQ(run.elapsed, 0);
  }
}

TEST(ax_slider, is_refused_unless_its_label_is_unique_and_exact) {
  TestMac mac(inWindow(size + size + R"(            AXButton "Only"
            AXSlider "Width"
)"));
  for (const char* word : {"increment", "7", "nonsense"}) {
    const Result run = mac.driver("ax-slider Notes Size " + std::string(word));
    EXPECT_EQ(seen(run), refused("2 sliders labelled \\\"Size\\\""));
    EXPECT_EQ(run.effects, enabling);
  }
  for (const char* label : {"width", "Wid", "Width ", "Only", ""}) {
    EXPECT_EQ(seen(mac.driverWith({"ax-slider", "Notes", label})),
              refused("0 sliders labelled \\\"" + std::string(label) + "\\\""));
  }
}

TEST(ax_slider, keeps_to_the_window_scope) {
  TestMac mac(inWindow(size + "        window 8 \"Archive\" at 0,0 size 90x90\n" + size));
  EXPECT_EQ(seen(mac.driver("ax-slider Notes Size", {{"CU_WINDOW", "inbox"}})),
            success(R"({"max":24,"min":0,"ok":true,"value":6})"));
}

TEST(ax_slider, needs_its_words) {
  TestMac mac(inWindow(size));
  EXPECT_EQ(seen(mac.driver("ax-slider Notes")),
            failure("usage: ax-slider <app> <label> [<number>|increment|decrement]"));
  EXPECT_EQ(seen(mac.driver("ax-slider Nobody Size up")), failure("app not running: Nobody"));
}

}  // namespace ax_controls_test
