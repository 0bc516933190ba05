#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "simulator/desktop.h"
#include "tests/support/inside.h"

/// How often the commands that search elements ask the application, exactly; and that they ask
/// nothing twice.
namespace {

using namespace testing_support;

bool isMessage(const std::string& call) {
  return call.compare(0, 3, "ax.") == 0 || call == "private.ax-window";
}

std::int64_t messages(const Result& run) {
  return std::count_if(run.calls.begin(), run.calls.end(), isMessage);
}

/// So many elements in all, the window among them; half of them buttons with labels.
std::string treeOf(int elements) {
  const int groups = elements / 2 - 1;
  return R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 900x700
            AXButton "Send" at 5,5 size 20x10 repeat )" +
         std::to_string(elements - groups - 1) + "\n            AXGroup repeat " +
         std::to_string(groups) + "\n";
}

std::int64_t messagesOf(const std::string& world, const std::string& line) {
  TestMac mac(world);
  return messages(mac.driver(line));
}

// Three come first: two that ask for all the application has, and the read of its windows.
TEST(round_trips, of_a_walk_are_one_for_each_element_and_three) {
  for (const int count : {300, 5'000}) {
    const std::string tree = treeOf(count);
    EXPECT_EQ(messagesOf(tree, "ax-find-text Notes Send"), count + 3);
    EXPECT_EQ(messagesOf(tree, "ax-texts-at Notes 10 10"), count + 3);
    EXPECT_EQ(messagesOf(tree, "ax-dump Notes"), std::min(count, 4'000) + 3);
    EXPECT_EQ(messagesOf(tree, "ax-press-exact Notes Other"), count + 3);
    EXPECT_EQ(messagesOf(tree, "ax-press-exact Notes Send"), count + 3);
    EXPECT_EQ(messagesOf(tree, "ax-press-exact Notes Send only Bar"), count + 3);
    EXPECT_EQ(messagesOf(tree, "ax-press-in-document Notes Chat Send"), count + 3);
  }
}

TEST(round_trips, of_a_list_are_one_more_for_each_entry) {
  EXPECT_EQ(messagesOf(treeOf(300), "ax-list Notes"), 300 + 3 + 150);
  // It ends with 400 entries, which come behind all the groups.
  EXPECT_EQ(messagesOf(treeOf(5'000), "ax-list Notes"), 1 + 2'499 + 400 + 3 + 400);
}

TEST(round_trips, of_a_match_are_one_more_for_its_value_or_for_its_press_and_reading) {
  // Nothing but the last of the buttons matches: "Send" as well as any, the groups come first.
  EXPECT_EQ(messagesOf(treeOf(300), "ax-match Notes Send -1 -1"), 1 + 149 + 1 + 3 + 1);
  EXPECT_EQ(messagesOf(treeOf(300), "ax-press-match Notes Send -1 -1"), 1 + 149 + 1 + 3 + 2);
  EXPECT_EQ(messagesOf(treeOf(300), "ax-match Notes Send -1 0"), 300 + 3 + 1);
}

TEST(round_trips, of_a_search_that_finds_nothing_end_with_one_for_the_point) {
  for (const int count : {300, 5'000, 20'000}) {
    EXPECT_EQ(messagesOf(treeOf(count), "ax-match Notes Other -1 -1"), count + 3 + 1);
  }
}

TEST(round_trips, at_a_point_are_one_for_each_element_on_the_way_up) {
  const char* tree = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 900x700
            AXButton "Send" at 5,5 size 20x10
                AXGroup at 5,5 size 20x10
)";
  // Two to enable, the point, two on the way, the description.
  EXPECT_EQ(messagesOf(tree, "ax-at Notes 10 10"), 2 + 1 + 2 + 1);
  EXPECT_EQ(messagesOf(tree, "ax-press Notes 10 10"), 2 + 1 + 2 + 1 + 1);
}

TEST(walks, end_after_20000_elements) {
  const auto tree = [](int groups) {
    return "app Notes pid 41\n    window 7 at 0,0 size 900x700\n"
           "        AXButton \"Send\" at 5,5 size 20x10\n        AXGroup repeat " +
           std::to_string(groups) + "\n";
  };
  const std::string send =
      R"({"frame":{"height":10,"width":20,"x":5,"y":5},"label":"Send","role":"AXButton"})";
  TestMac reached(tree(19'998));
  EXPECT_EQ(seen(reached.driver("ax-list Notes")),
            success(R"({"elements":[)" + send + R"(],"ok":true})"));
  EXPECT_EQ(seen(reached.driver("ax-match Notes Send -1 -1")),
            success(R"({"element":)" + send + R"(,"matchedBy":"label","ok":true})"));
  TestMac beyond(tree(19'999));
  const Result list = beyond.driver("ax-list Notes");
  EXPECT_EQ(seen(list), success(R"({"elements":[],"ok":true})"));
  EXPECT_EQ(messages(list), 20'000 + 3);
  const Result match = beyond.driver("ax-match Notes Send -1 -1");
  EXPECT_EQ(seen(match), success(R"({"error":"no element","ok":false})"));
  EXPECT_EQ(messages(match), 20'000 + 3 + 1);
}

TEST(walks, of_30000_elements_are_30000_reads) {
  EXPECT_EQ(messagesOf(treeOf(30'000), "ax-find-text Notes Send"), 30'003);
  EXPECT_EQ(messagesOf(treeOf(30'002), "ax-find-text Notes Send"), 30'003);
  EXPECT_EQ(messagesOf(treeOf(30'000), "ax-match Notes Other -1 -1"), 20'004);
}

TEST(walks, for_controls_go_60_levels_below_the_windows) {
  const auto tree = [](std::size_t groups) {
    std::string text = "app Notes pid 41\n  window 7 at 0,0 size 900x700\n";
    for (std::size_t i = 0; i < groups; ++i) text += std::string(4 + i, ' ') + "AXGroup\n";
    return text + std::string(4 + groups, ' ') + "AXButton \"Send\" at 5,5 size 20x10\n";
  };
  const std::string send =
      R"({"frame":{"height":10,"width":20,"x":5,"y":5},"label":"Send","role":"AXButton"})";
  TestMac reached(tree(59));
  EXPECT_EQ(seen(reached.driver("ax-list Notes")),
            success(R"({"elements":[)" + send + R"(],"ok":true})"));
  EXPECT_EQ(seen(reached.driver("ax-match Notes Send -1 -1")),
            success(R"({"element":)" + send + R"(,"matchedBy":"label","ok":true})"));
  TestMac beyond(tree(60));
  EXPECT_EQ(seen(beyond.driver("ax-list Notes")), success(R"({"elements":[],"ok":true})"));
  EXPECT_EQ(seen(beyond.driver("ax-match Notes Send -1 -1")),
            success(R"({"error":"no element","ok":false})"));
}

constexpr const char* varied = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 900x700
            AXGroup "Bar"
                AXButton at 5,5 size 20x10
                    AXGroup
                        AXStaticText value "Send"
                    AXLink at 9,5 size 20x10
                        AXStaticText value "it"
                AXCheckBox at 5,25 size 20x10
            AXTextArea "To" at 5,45 size 20x10 value "Ada"
                AXStaticText value "Ada"
            AXRow "Row" at 5,65 size 20x10
                AXButton at 5,65 size 20x10
                    AXStaticText value "Open"
            AXWebArea "Chat"
                AXButton "Send" at 5,85 size 20x10
)";

/// The attributes that one run read more than once of one element.
std::vector<std::string> readTwice(const std::string& line) {
  TestMac mac(varied);
  mac.driver(line);
  std::vector<std::string> twice;
  std::set<std::string> read;
  for (const auto& entry : mac.desktop().trace()) {
    std::vector<std::string> names;
    if (entry.call.function == platform::Function::axAttribute) {
      names = {driver::unpack<std::string>(entry.call.arguments[1])};
    } else if (entry.call.function == platform::Function::axAttributes) {
      names = driver::unpack<std::vector<std::string>>(entry.call.arguments[1]);
    }
    for (const std::string& name : names) {
      const auto element = driver::unpack<platform::ElementReference>(entry.call.arguments[0]);
      const std::string each = std::to_string(element.id) + " " + name;
      if (!read.insert(each).second) twice.push_back(each);
    }
  }
  return twice;
}

TEST(walks, read_nothing_twice) {
  for (const char* line :
       {"ax-list Notes", "ax-dump Notes", "ax-find-text Notes Send it", "ax-texts-at Notes 6 6",
        "ax-at Notes 6 6", "ax-match Notes Other -1 -1", "ax-match Notes send -1 -1",
        "ax-match Notes To -1 -1", "ax-press-exact Notes Other only Bar"}) {
    EXPECT_EQ(readTwice(line), std::vector<std::string>()) << line;
  }
}

}  // namespace
