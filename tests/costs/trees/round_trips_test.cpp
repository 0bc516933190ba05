#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "simulator/desktop.h"
#include "tests/support/inside.h"

/// How often the commands that search elements ask the application, exactly; and that they ask
/// nothing twice.
namespace {

using namespace testing_support;

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
    app Notes pid 41 failing AXFocusedUIElement -25212
        menu File > New disabled
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
            AXTextArea "Later" at 5,105 size 20x10 value "Ada" attribute AXFocused true
            AXSlider "Size" value 5
            AXSheet at 5,125 size 20x10
                AXStaticText value "Sure?"
                AXButton "Yes"
            AXMenu
                AXMenuItem "Cut"
                    AXStaticText value "x"
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
        "ax-match Notes late -1 -1", "ax-match Notes To -1 -1",
        "ax-press-exact Notes Other only Bar", "ax-modal Notes", "ax-focused Notes",
        "ax-popup-items Notes", "ax-slider Notes Size", "ax-menubar Notes",
        "ax-menu Notes File Nothing", "ax-menu Notes File New"}) {
    EXPECT_EQ(readTwice(line), std::vector<std::string>()) << line;
  }
}

}  // namespace
