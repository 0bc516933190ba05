#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "tests/support/simulated_run.h"

/// "ax-match" and "ax-press-match": the control that a label describes, near a point.
namespace ax_match_test {

using namespace testing_support;

std::string windowOf(const std::string& elements) {
  return "    app Notes pid 41\n        window 7 \"Inbox\" at 0,0 size 900x700\n" + elements;
}

std::string match(const std::string& world, const std::string& label, const std::string& x,
                  const std::string& y, const Environment& environment = {}) {
  TestMac mac(world);
  return seen(mac.driverWith({"ax-match", "Notes", label, x, y}, environment));
}

/// The reply about an element of this label with a frame of 20 by 10 points.
std::string matched(const std::string& label, const std::string& position, const std::string& kind,
                    const std::string& role = "AXButton") {
  const std::size_t comma = position.find(',');
  return success(R"({"element":{"frame":{"height":10,"width":20,"x":)" + position.substr(0, comma) +
                 R"(,"y":)" + position.substr(comma + 1) + R"(},"label":")" + label +
                 R"(","role":")" + role + R"("},"matchedBy":")" + kind + R"(","ok":true})");
}

const std::string noElement = success(R"({"error":"no element","ok":false})");

TEST(ax_match, takes_the_nearer_of_two_with_the_label) {
  // Their centres are 10 and 40 points from 100,100.
  const std::string world = windowOf(R"(
            AXButton "Send" at 100,95 size 20x10
            AXButton "Send" at 50,95 size 20x10
)");
  EXPECT_EQ(match(world, "Send", "100", "120"), matched("Send", "100,95", "label"));
  EXPECT_EQ(match(world, "Send", "60", "120"), matched("Send", "50,95", "label"));
}

TEST(ax_match, prefers_the_label_itself_to_one_that_contains_it_however_near) {
  EXPECT_EQ(match(windowOf(R"(
            AXButton "Send" at 190,95 size 20x10
            AXButton "Send later" at 90,95 size 20x10
)"),
                  "Send", "100", "100"),
            matched("Send", "190,95", "label"));
}

TEST(ax_match, compares_labels_by_words_in_any_case) {
  EXPECT_EQ(match(windowOf("            AXButton \" SEND\\n now \" at 0,0 size 20x10\n"),
                  "send   Now", "-1", "-1"),
            matched(R"( SEND\n now )", "0,0", "label"));
}

TEST(ax_match, takes_composed_and_decomposed_letters_for_the_same) {
  EXPECT_EQ(match(windowOf("            AXButton \"Caf\\u{e9}\" at 0,0 size 20x10\n"), "CAFE\u0301",
                  "-1", "-1"),
            matched("Caf\u00e9", "0,0", "label"));
}

TEST(ax_match, by_containment_works_both_ways) {
  const std::string world = windowOf("            AXButton \"Send now\" at 0,0 size 20x10\n");
  EXPECT_EQ(match(world, "send", "-1", "-1"), matched("Send now", "0,0", "label~"));
  EXPECT_EQ(match(world, "please send now!", "-1", "-1"), matched("Send now", "0,0", "label~"));
  EXPECT_EQ(match(world, "send later", "-1", "-1"), noElement);
}

TEST(ax_match, without_a_point_takes_the_first_of_the_walk) {
  EXPECT_EQ(match(R"(
    app Notes pid 41
        window 7 at 0,0 size 900x700
            AXButton "Send" at 1,1 size 20x10
        window 8 at 0,0 size 900x700
            AXButton "Send" at 2,2 size 20x10
            AXGroup
                AXButton "Send" at 3,3 size 20x10
                AXButton "Send" at 4,4 size 20x10
)",
                  "Send", "-1", "-1"),
            matched("Send", "4,4", "label"));
}

TEST(ax_match, takes_a_point_with_one_coordinate_of_minus_one_for_a_point) {
  const std::string world = windowOf("            AXButton \"Send\" at 500,500 size 20x10\n");
  EXPECT_EQ(match(world, "Send", "-1", "-1.5"), noElement);
  EXPECT_EQ(match(world, "Send", "-1", "0"), noElement);
  EXPECT_EQ(match(world, "Send", "-1", "-1"), matched("Send", "500,500", "label"));
}

TEST(ax_match, on_a_full_tie_keeps_the_first) {
  EXPECT_EQ(match(windowOf(R"(
            AXButton "Send" at 120,95 size 20x10
            AXButton "Send" at 60,95 size 20x10
)"),
                  "Send", "100", "100"),
            matched("Send", "60,95", "label"));
  EXPECT_EQ(match(windowOf(R"(
            AXButton "Send it" at 95,95 size 20x10
            AXButton "Send me" at 95,95 size 20x10
)"),
                  "Send", "100", "100"),
            matched("Send me", "95,95", "label~"));
}

TEST(ax_match, reaches_160_points_from_the_centre) {
  const std::string world = windowOf("            AXButton \"Send\" at 290,295 size 20x10\n");
  EXPECT_EQ(match(world, "Send", "460", "300"), matched("Send", "290,295", "label"));
  EXPECT_EQ(match(world, "Send", "460.01", "300"), noElement);
  EXPECT_EQ(match(world, "Send", "396", "428"), matched("Send", "290,295", "label"));  // 96, 128
  EXPECT_EQ(match(world, "Send", "397", "428"), noElement);
}

TEST(ax_match, has_no_distance_to_a_frame_around_the_point) {
  TestMac mac(windowOf(R"(
            AXRow "Send" at 0,0 size 900x700
            AXButton "Send" at 11,1 size 20x10
)"));
  EXPECT_EQ(seen(mac.driver("ax-match Notes Send 890 690")),
            success(R"({"element":{"frame":{"height":700,"width":900,"x":0,"y":0},"label":"Send",)"
                    R"("role":"AXRow"},"matchedBy":"label","ok":true})"));
  // The right and bottom edges are outside: the centre counts, which is too far.
  TestMac other(windowOf("            AXRow \"Send\" at 0,0 size 800x20\n"));
  EXPECT_EQ(seen(other.driver("ax-match Notes Send 800 10")), noElement);
}

TEST(ax_match, needs_a_frame_wider_than_a_point_but_not_higher) {
  EXPECT_EQ(match(windowOf("            AXButton \"Send\" at 5,5 size 1x10\n"), "Send", "-1", "-1"),
            noElement);
  EXPECT_EQ(match(windowOf("            AXButton \"Send\"\n"), "Send", "-1", "-1"), noElement);
  EXPECT_EQ(
      match(windowOf("            AXButton \"Send\" at nan,5 size 20x10\n"), "Send", "-1", "-1"),
      noElement);
  EXPECT_EQ(
      match(windowOf("            AXButton \"Send\" at 5,5 size 1.5x0\n"), "Send", "-1", "-1"),
      success(R"({"element":{"frame":{"height":0,"width":1.5,"x":5,"y":5},"label":"Send",)"
              R"("role":"AXButton"},"matchedBy":"label","ok":true})"));
}

TEST(ax_match, takes_only_what_can_be_acted_on) {
  EXPECT_EQ(match(windowOf("            AXGroup \"Send\" at 5,5 size 20x10 "
                           "attribute AXEditable true\n"),
                  "Send", "-1", "-1"),
            noElement);
}

TEST(ax_match, reads_the_inner_texts_of_a_control_without_a_label) {
  EXPECT_EQ(match(windowOf(R"(
            AXButton at 5,5 size 20x10
                AXGroup
                    AXStaticText value "Send"
                AXStaticText value "now"
)"),
                  "send NOW", "-1", "-1"),
            matched("", "5,5", "label"));
}

TEST(ax_match, reads_40_elements_and_120_characters_of_inner_texts) {
  const auto button = [](const std::string& before) {
    return windowOf("            AXButton at 5,5 size 20x10\n" + before +
                    "                AXStaticText value \"Send\"\n");
  };
  EXPECT_EQ(match(button("                AXImage repeat 38\n"), "send", "-1", "-1"),
            matched("", "5,5", "label"));
  EXPECT_EQ(match(button("                AXImage repeat 39\n"), "send", "-1", "-1"), noElement);
  const auto text = [&](std::size_t length) {
    return button("                AXStaticText value \"" + std::string(length, 'a') + "\"\n");
  };
  EXPECT_EQ(match(text(115), "send", "-1", "-1"), matched("", "5,5", "label~"));
  EXPECT_EQ(match(text(116), "send", "-1", "-1"), noElement);
}

TEST(ax_match, never_takes_a_field_for_its_contents) {
  EXPECT_EQ(match(windowOf(R"(
            AXTextArea at 5,5 size 20x10 value "Send"
                AXStaticText value "Send"
)"),
                  "Send", "-1", "-1"),
            noElement);
}

TEST(ax_match, finds_a_control_without_any_text_by_its_role_near_a_point) {
  const std::string world = windowOf("            AXPopUpButton at 95,95 size 20x10\n");
  for (const char* label : {"popupbutton", "Pop Up Button", " POPUP  button "}) {
    EXPECT_EQ(match(world, label, "110", "110"), matched("", "95,95", "role", "AXPopUpButton"));
    EXPECT_EQ(match(world, label, "-1", "-1"), noElement);
  }
  EXPECT_EQ(match(world, "button", "110", "110"), noElement);
  EXPECT_EQ(match(world, "AXPopUpButton", "110", "110"), noElement);
}

TEST(ax_match, prefers_a_containing_label_to_a_role) {
  EXPECT_EQ(match(windowOf(R"(
            AXButton "The button" at 190,95 size 20x10
            AXButton at 95,95 size 20x10
)"),
                  "button", "100", "100"),
            matched("The button", "190,95", "label~"));
}

TEST(ax_match, finds_a_field_without_a_label_by_its_role) {
  TestMac mac(windowOf("            AXTextField at 95,95 size 20x10 value \"Ada\"\n"));
  EXPECT_EQ(seen(mac.driverWith({"ax-match", "Notes", "text field", "100", "100"})),
            success(R"({"element":{"frame":{"height":10,"width":20,"x":95,"y":95},"label":"",)"
                    R"("role":"AXTextField","value":"Ada"},"matchedBy":"role","ok":true})"));
}

TEST(ax_match, falls_back_to_what_is_at_the_point) {
  const std::string world = windowOf("            AXButton \"Send\" at 95,95 size 20x10\n");
  EXPECT_EQ(match(world, "Other", "100", "100"), matched("Send", "95,95", "hit"));
  EXPECT_EQ(match(world, "Other", "10", "10"), noElement);
}

TEST(ax_match, falls_back_to_minus_one_too) {
  EXPECT_EQ(match(R"(
    app Notes pid 41
        window 7 at -100,-100 size 900x700
            AXButton "Send" at -10,-5 size 20x10
)",
                  "Other", "-1", "-1"),
            matched("Send", "-10,-5", "hit"));
}

TEST(ax_match, without_a_label_does_not_walk) {
  for (const char* label : {"", " \n\t "}) {
    TestMac mac(windowOf("            AXButton \"Send\" at 95,95 size 20x10\n"));
    const Result run = mac.driverWith({"ax-match", "Notes", label, "100", "100"});
    EXPECT_EQ(seen(run), matched("Send", "95,95", "hit"));
    EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.attribute"), 0);
    EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.element-at"), 1);
  }
}

TEST(ax_match, sees_only_the_windows_in_scope) {
  const char* world = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 100x100
            AXButton "Send later" at 5,5 size 20x10
        window 8 "Draft" at 200,0 size 100x100
            AXButton "Send" at 205,5 size 20x10
)";
  EXPECT_EQ(match(world, "Send", "-1", "-1", {{"CU_WINDOW", "inbox"}}),
            matched("Send later", "5,5", "label~"));
  EXPECT_EQ(match(world, "Other", "210", "10", {{"CU_WINDOW", "inbox"}}), noElement);
  EXPECT_EQ(match(world, "Other", "210", "10"), matched("Send", "205,5", "hit"));
}

TEST(ax_match, never_presses) {
  TestMac mac(windowOf("            AXButton \"Send\" at 95,95 size 20x10\n"));
  EXPECT_EQ(mac.driver("ax-match Notes Send 1 1").effects,
            "    0 ms  write 41/0 AXManualAccessibility true\n"
            "    0 ms  write 41/0 AXEnhancedUserInterface true\n");
}

constexpr const char* sender = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 900x700
            AXLink "Send" at 95,95 size 20x10 value "no" press: set Send "yes"
)";

TEST(ax_press_match, presses_and_tells_how_the_control_is_after_it) {
  for (const auto& [label, kind] :
       {std::pair{"send", "label"}, {"Send it", "label~"}, {"Other", "hit"}}) {
    TestMac mac(sender);
    const Result run = mac.driverWith({"ax-press-match", "Notes", label, "100", "100"});
    EXPECT_EQ(seen(run),
              success(R"({"axError":0,"element":{"frame":{"height":10,"width":20,"x":95,"y":95},)"
                      R"("label":"Send","role":"AXLink","value":"yes"},"matchedBy":")" +
                      std::string(kind) + R"(","ok":true})"));
    EXPECT_EQ(run.effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
    0 ms  action 41/7 AXPress: pressed AXLink "Send"
)");
    EXPECT_EQ(run.elapsed, 0);
  }
}

TEST(ax_press_match, that_fails_tells_the_platforms_code) {
  TestMac mac(sender, {"ax.perform 1 error -25200"});
  EXPECT_EQ(
      seen(mac.driver("ax-press-match Notes Send 1 1")),
      success(R"({"axError":-25200,"element":{"frame":{"height":10,"width":20,"x":95,"y":95},)"
              R"("label":"Send","role":"AXLink","value":"no"},"matchedBy":"label",)"
              R"("ok":false})"));
}

TEST(ax_press_match, of_nothing_is_refused) {
  TestMac mac(sender);
  EXPECT_EQ(seen(mac.driver("ax-press-match Notes Other 1 1")), noElement);
}

}  // namespace ax_match_test
