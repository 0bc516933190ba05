#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-press-exact": the control with exactly a label, perhaps in a named container.
namespace ax_press_exact_test {

using namespace testing_support;

std::string windowOf(const std::string& elements) {
  return "    app Notes pid 41\n        window 7 \"Inbox\" at 0,0 size 900x700\n" + elements;
}

Result press(const std::string& world, std::vector<std::string> words,
             const Environment& environment = {}) {
  words.insert(words.begin(), {"ax-press-exact", "Notes"});
  return TestMac(world).driverWith(words, environment);
}

std::string pressed(const std::string& world, std::vector<std::string> words,
                    const Environment& environment = {}) {
  return seen(press(world, std::move(words), environment));
}

std::string done(const std::string& label, const std::string& y, int matches) {
  return success(R"({"axError":0,"element":{"frame":{"height":10,"width":20,"x":5,"y":)" + y +
                 R"(},"label":")" + label + R"(","role":"AXButton"},"matches":)" +
                 std::to_string(matches) + R"(,"ok":true})");
}

std::string refused(const std::string& error) {
  return success(R"({"error":")" + error + R"(","ok":false})");
}

const std::string twoSends = windowOf(R"(
            AXButton "Send" at 5,100 size 20x10
            AXButton "send" at 5,300 size 20x10
            AXButton "Send now" at 5,400 size 20x10
)");

TEST(ax_press_exact, refuses_to_guess) {
  const Result run = press(twoSends, {"Send"});
  EXPECT_EQ(seen(run), refused(R"(2 elements labelled \"Send\")"));
  EXPECT_EQ(run.effects,
            "    0 ms  write 41/0 AXManualAccessibility true\n"
            "    0 ms  write 41/0 AXEnhancedUserInterface true\n");
  EXPECT_EQ(pressed(twoSends, {"Send", "only"}), refused(R"(2 elements labelled \"Send\")"));
}

TEST(ax_press_exact, presses_the_lowest_when_told_to_take_the_last) {
  const Result run = press(twoSends, {"Send", "last"});
  EXPECT_EQ(seen(run), done("send", "300", 2));
  EXPECT_EQ(run.effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
    0 ms  action 41/7 AXPress: pressed AXButton "send", which does nothing
)");
}

TEST(ax_press_exact, takes_every_mode_but_only_for_last) {
  for (const char* mode : {"Only", "first", "", "only "}) {
    EXPECT_EQ(pressed(twoSends, {"Send", mode}), done("send", "300", 2)) << mode;
  }
}

TEST(ax_press_exact, presses_the_only_one) {
  EXPECT_EQ(pressed(twoSends, {" SEND  now"}), done("Send now", "400", 1));
  EXPECT_EQ(pressed(twoSends, {"send now", "last"}), done("Send now", "400", 1));
}

TEST(ax_press_exact, does_not_find_by_containment_or_inner_text) {
  const std::string world = windowOf(R"(
            AXButton "Send now" at 5,100 size 20x10
            AXButton at 5,300 size 20x10
                AXStaticText value "Send"
            AXGroup "Send" at 5,300 size 20x10
)");
  EXPECT_EQ(pressed(world, {"Send"}), refused(R"(no element labelled \"Send\")"));
  EXPECT_EQ(pressed(world, {" se\"nd "}), refused(R"(no element labelled \" se\"nd \")"));
}

TEST(ax_press_exact, compares_by_canonical_equivalence) {
  EXPECT_EQ(pressed(windowOf("            AXButton \"Caf\\u{e9}\" at 5,100 size 20x10\n"),
                    {"cafe\u0301"}),
            done("Caf\u00e9", "100", 1));
}

TEST(ax_press_exact, judges_by_the_top_edge_and_not_by_the_order) {
  EXPECT_EQ(pressed(windowOf(R"(
            AXButton "Send" at 5,300 size 20x10
            AXButton "Send" at 5,100 size 20x900
            AXButton "Send" at 5,200 size 20x10
)"),
                    {"Send", "last"}),
            done("Send", "300", 3));
}

TEST(ax_press_exact, takes_what_has_no_frame_for_the_highest) {
  EXPECT_EQ(pressed(windowOf(R"(
            AXButton "Send" at 5,-900 size 20x10
            AXButton "Send"
)"),
                    {"Send", "last"}),
            done("Send", "-900", 2));
  EXPECT_EQ(pressed(windowOf("            AXButton \"Send\"\n"), {"Send"}),
            success(R"({"axError":0,"element":{"label":"Send","role":"AXButton"},"matches":1,)"
                    R"("ok":true})"));
}

TEST(ax_press_exact, does_not_need_a_size) {
  EXPECT_EQ(pressed(windowOf("            AXButton \"Send\" at 5,100 size 0x0\n"), {"Send"}),
            success(R"({"axError":0,"element":{"frame":{"height":0,"width":0,"x":5,"y":100},)"
                    R"("label":"Send","role":"AXButton"},"matches":1,"ok":true})"));
}

TEST(ax_press_exact, that_fails_tells_the_platforms_code) {
  TestMac mac(windowOf("            AXButton \"Send\" at 5,100 size 20x10\n"),
              {"ax.perform 1 error -25204"});
  EXPECT_EQ(seen(mac.driver("ax-press-exact Notes Send")),
            success(R"({"axError":-25204,"element":{"frame":{"height":10,"width":20,"x":5,)"
                    R"("y":100},"label":"Send","role":"AXButton"},"matches":1,"ok":false})"));
}

const std::string navigation = windowOf(R"(
            AXGroup "Main  Navigation" at 0,0 size 200x700
                AXGroup
                    AXButton "Home" at 5,100 size 20x10
            AXGroup "Footer"
                AXButton "Home" at 5,600 size 20x10
            AXGroup "Empty"
            AXButton "Home" at 5,650 size 20x10
)");

TEST(ax_press_exact, in_a_container_looks_nowhere_else) {
  EXPECT_EQ(pressed(navigation, {"Home", "only", " main navigation"}), done("Home", "100", 1));
  EXPECT_EQ(pressed(navigation, {"Home", "last", "Footer"}), done("Home", "600", 1));
  EXPECT_EQ(pressed(navigation, {"Home", "last", "Empty"}),
            refused(R"(no element labelled \"Home\")"));
  EXPECT_EQ(pressed(navigation, {"Home", "last"}), done("Home", "650", 3));
}

const std::string notUnique = failure("the requested navigation container is not unique");

TEST(ax_press_exact, needs_exactly_one_such_container) {
  EXPECT_EQ(pressed(navigation, {"Home", "only", "Sidebar"}), notUnique);
  EXPECT_EQ(pressed(navigation, {"Home", "only", "Main"}), notUnique);
  const std::string two = windowOf(R"(
            AXGroup "Bar"
                AXButton "Home" at 5,100 size 20x10
                AXGroup "bar"
)");
  const Result run = press(two, {"Home", "only", "Bar"});
  EXPECT_EQ(seen(run), notUnique);
  EXPECT_EQ(run.effects,
            "    0 ms  write 41/0 AXManualAccessibility true\n"
            "    0 ms  write 41/0 AXEnhancedUserInterface true\n");
}

TEST(ax_press_exact, takes_only_groups_for_containers) {
  EXPECT_EQ(pressed(windowOf(R"(
            AXRow "Bar"
                AXButton "Home" at 5,100 size 20x10
            AXGroup
                AXStaticText value "Bar"
)"),
                    {"Home", "only", "Bar"}),
            notUnique);
}

TEST(ax_press_exact, refuses_an_empty_container) {
  for (const char* container : {"", "  \n"}) {
    const Result run = press(navigation, {"Home", "only", container});
    EXPECT_EQ(seen(run), failure("empty navigation container"));
  }
}

TEST(ax_press_exact, counts_containers_in_scope_only) {
  const char* world = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 100x100
            AXGroup "Bar"
                AXButton "Home" at 5,100 size 20x10
        window 8 "Draft" at 200,0 size 100x100
            AXGroup "Bar"
                AXButton "Home" at 5,200 size 20x10
)";
  const Environment inbox = {{"CU_WINDOW", "inbox"}};
  EXPECT_EQ(pressed(world, {"Home", "only", "Bar"}, inbox), done("Home", "100", 1));
  EXPECT_EQ(pressed(world, {"Home", "only", "Bar"}), notUnique);
  EXPECT_EQ(pressed(world, {"Home", "last"}, inbox), done("Home", "100", 1));
}

/// So many groups, one in the other, and a button in the last.
std::string deep(int groups, const std::string& first) {
  std::string elements = "            AXGroup \"" + first + "\"\n";
  for (int i = 1; i < groups; ++i) {
    elements += std::string(static_cast<std::size_t>(12 + i), ' ') + "AXGroup\n";
  }
  return windowOf(elements + std::string(static_cast<std::size_t>(12 + groups), ' ') +
                  "AXButton \"Send\" at 5,100 size 20x10\n");
}

TEST(ax_press_exact, looks_80_levels_below_its_windows_or_its_container) {
  EXPECT_EQ(pressed(deep(79, "Bar"), {"Send"}), done("Send", "100", 1));
  EXPECT_EQ(pressed(deep(80, "Bar"), {"Send"}), refused(R"(no element labelled \"Send\")"));
  EXPECT_EQ(pressed(deep(80, "Bar"), {"Send", "only", "Bar"}), done("Send", "100", 1));
  EXPECT_EQ(pressed(deep(81, "Bar"), {"Send", "only", "Bar"}),
            refused(R"(no element labelled \"Send\")"));
}

}  // namespace ax_press_exact_test
