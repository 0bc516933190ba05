#include "accessibility/walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "accessibility/element.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

/// The labels of what a walk from the windows of Notes visits, in order.
std::vector<std::string> visited(const std::string& elements, WalkBounds bounds,
                                 Walk::Siblings siblings = Walk::Siblings::lastFirst) {
  TestMac mac("    app Notes pid 41\n        window 7 \"W\" at 0,0 size 9x9\n" + elements);
  return valueInside(mac, [&] {
    std::vector<std::string> labels;
    Walk walk(axWindows(axApp("Notes")), labelAttributes, bounds, siblings);
    while (Snapshot* element = walk.next()) labels.push_back(axLabel(*element));
    return labels;
  });
}

using Labels = std::vector<std::string>;

constexpr const char* tree = R"(
            AXGroup "A"
                AXGroup "B"
                AXGroup "C"
                    AXGroup "D"
            AXGroup "E"
)";

TEST(walk, visits_the_last_of_siblings_first_and_all_below_it) {
  EXPECT_EQ(visited(tree, {20, 20}), (Labels{"W", "E", "A", "C", "D", "B"}));
}

TEST(walk, asks_for_nothing_more_at_its_end) {
  TestMac mac("    app Notes pid 41\n        window 7 \"W\" at 0,0 size 9x9\n" + std::string(tree));
  const Result run = runInside(mac, [] {
    Walk walk(axWindows(axApp("Notes")), labelAttributes, {20, 20});
    while (walk.next() != nullptr) {
    }
    EXPECT_EQ(walk.next(), nullptr);
  });
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.attributes"), 6);
  EXPECT_EQ(run.calls.back(), "ax.attributes");
}

TEST(walk, visits_siblings_in_order_when_told_so) {
  EXPECT_EQ(visited(tree, {20, 20}, Walk::Siblings::firstFirst),
            (Labels{"W", "A", "B", "C", "D", "E"}));
}

TEST(walk, visits_no_more_elements_than_its_bounds) {
  EXPECT_EQ(visited(tree, {4, 20}), (Labels{"W", "E", "A", "C"}));
  EXPECT_EQ(visited(tree, {1, 20}), Labels{"W"});
  EXPECT_EQ(visited(tree, {0, 20}), Labels{});
}

TEST(walk, goes_no_deeper_than_its_bounds) {
  EXPECT_EQ(visited(tree, {20, 1}), (Labels{"W", "E", "A"}));
  EXPECT_EQ(visited(tree, {20, 0}), Labels{"W"});
}

/// How many elements a walk and a branch of it, begun at "Bar", visit.
std::pair<int, int> counted(const std::string& elements, WalkBounds trunk, WalkBounds branch) {
  TestMac mac("    app Notes pid 41\n        window 7 at 0,0 size 9x9\n" + elements);
  return valueInside(mac, [&] {
    std::pair<int, int> counts = {0, 0};
    bool begun = false;
    Walk walk(axWindows(axApp("Notes")), labelAttributes, trunk);
    while (Snapshot* element = walk.next()) {
      if (walk.inTrunk()) ++counts.first;
      if (!begun && axLabel(*element) == "Bar") {
        walk.beginBranch(branch);
        begun = true;
      }
      if (begun && walk.inBranch(0)) ++counts.second;
    }
    return counts;
  });
}

TEST(walk, and_a_branch_of_it_end_each_by_itself) {
  const char* elements = R"(
            AXGroup
            AXGroup "Bar"
                AXGroup
                    AXGroup
                        AXGroup
                AXGroup repeat 5
            AXGroup
)";
  EXPECT_EQ(counted(elements, {100, 100}, {100, 100}), (std::pair{12, 9}));
  EXPECT_EQ(counted(elements, {100, 1}, {100, 2}), (std::pair{4, 8}));
  EXPECT_EQ(counted(elements, {3, 100}, {100, 100}), (std::pair{3, 9}));
  EXPECT_EQ(counted(elements, {100, 100}, {4, 1}), (std::pair{12, 4}));
}

TEST(walk, visits_all_it_may_beside_a_branch_that_leaves_much_behind) {
  // Below the depth of the walk the branch leaves siblings on the way, which the walk does not
  // visit.
  std::string elements =
      "            AXGroup repeat 150\n            AXGroup\n"
      "                AXGroup repeat 100\n                AXGroup \"Bar\"\n";
  std::string indent = "                    ";
  for (int level = 0; level < 6; ++level, indent += " ") {
    elements += indent + "AXGroup repeat 8\n" + indent + "AXGroup\n";
  }
  EXPECT_EQ(counted(elements, {110, 3}, {10, 20}), (std::pair{110, 10}));
}

TEST(walk, keeps_the_last_visit_of_a_branch_that_the_trunk_leaves_behind) {
  // The trunk goes down to its end below the last sibling. The branch goes no deeper than the
  // siblings: when the trunk has ended, one visit is left for the next of them.
  const char* elements = R"(
            AXGroup "Bar"
                AXGroup repeat 2
                AXGroup
                    AXGroup repeat 20
                    AXGroup
                        AXGroup repeat 20
                        AXGroup
                            AXGroup repeat 20
)";
  EXPECT_EQ(counted(elements, {9, 10}, {3, 1}), (std::pair{9, 3}));
}

TEST(walk, keeps_what_is_left_to_visit_of_many_siblings_on_many_levels) {
  std::string elements;
  std::string indent = "            ";
  for (int level = 0; level < 20; ++level, indent += " ") {
    elements += indent + "AXGroup repeat 60\n" + indent + "AXGroup\n";
  }
  EXPECT_EQ(counted(elements, {100, 50}, {1, 1}), (std::pair{100, 0}));
}

TEST(walk, gives_an_element_away_with_its_children_and_goes_on_below_it) {
  TestMac mac(std::string("    app Notes pid 41\n        window 7 \"W\" at 0,0 size 9x9\n") + tree);
  const Result run = runInside(mac, [] {
    Walk walk(axWindows(axApp("Notes")), labelAttributes, {20, 20});
    Snapshot window = (walk.next(), walk.take());
    EXPECT_EQ(axLabel(*walk.next()), "E");
    EXPECT_EQ(axLabel(window), "W");
    EXPECT_EQ(window.children().size(), 2U);
    EXPECT_EQ(axLabel(*walk.next()), "A");
  });
  // The window and two elements. The application's windows alone are asked for by themselves.
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.attributes"), 3);
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.attribute"), 1);
}

}  // namespace
}  // namespace driver
