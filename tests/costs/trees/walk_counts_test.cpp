#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "tests/support/simulated_run.h"

/// How often each command that walks asks the application, exactly, in trees of four sizes.
namespace {

using namespace testing_support;

constexpr std::array<int, 4> sizes = {300, 5'000, 20'000, 30'000};
using Counts = std::array<std::int64_t, sizes.size()>;

std::int64_t messagesOf(const std::string& world, const std::vector<std::string>& words) {
  TestMac mac(world);
  return messages(mac.driverWith(words));
}

/// So many elements in all: the window, groups, and 15 of every kind, which are visited last.
std::string treeOf(int elements) {
  return R"(
    app Browser pid 40 frontmost
        window 5 "Start" at 1000,0 size 90x50
    app Notes pid 41 failing AXFocusedUIElement -25212
        window 7 "Inbox" at 0,0 size 900x700
            AXSlider "Size" value 6
            AXTextArea "To" at 5,45 size 20x10 value "Ada" attribute AXFocused true
                AXStaticText value "Ada"
            AXWebArea "Chat"
                AXButton "Reply" at 5,85 size 20x10
            AXGroup "Bar"
                AXButton "Send" at 5,5 size 20x10
            AXRow "Row" at 5,65 size 200x10
                AXButton at 5,65 size 20x10
                    AXStaticText value "Open"
            AXSheet at 5,125 size 20x10
                AXStaticText value "Sure?"
                AXButton "Yes" at 5,125 size 20x10
            AXMenuItem "Cut"
                AXStaticText value "x"
            AXGroup repeat )" +
         std::to_string(elements - 16) + "\n";
}

/// Of a run in each of the trees. Three messages come before the walk: two that ask for all that
/// the application has, and the read of its windows.
Counts countsOf(const std::vector<std::string>& words) {
  Counts counts{};
  for (std::size_t i = 0; i < sizes.size(); ++i) counts[i] = messagesOf(treeOf(sizes[i]), words);
  return counts;
}

/// A walk that ends after so many elements, with these messages besides the three before it.
Counts walked(int limit, std::int64_t more, std::int64_t moreBeyond) {
  Counts counts{};
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    counts[i] = 3 + std::min(sizes[i], limit) + (sizes[i] <= limit ? more : moreBeyond);
  }
  return counts;
}

TEST(round_trips, of_searches_for_texts_are_one_for_each_element) {
  EXPECT_EQ(countsOf({"ax-find-text", "Notes", "Ada", "Chat"}), walked(30'000, 0, 0));
  EXPECT_EQ(countsOf({"ax-texts-at", "Notes", "6", "6"}), walked(30'000, 0, 0));
}

TEST(round_trips, of_a_dump_are_one_for_each_of_4000_elements) {
  EXPECT_EQ(countsOf({"ax-dump", "Notes"}), walked(4'000, 0, 0));
}

TEST(round_trips, of_a_list_are_one_more_for_each_value_and_inner_text) {
  // Six controls with a value to read; in the row's button, and in the field, one static text.
  EXPECT_EQ(countsOf({"ax-list", "Notes"}), walked(20'000, 6 + 2, 0));
}

TEST(round_trips, of_a_press_by_an_exact_label_are_two_more) {
  // The press, and the control as it is after it.
  EXPECT_EQ(countsOf({"ax-press-exact", "Notes", "Send"}), walked(30'000, 2, 2));
  EXPECT_EQ(countsOf({"ax-press-exact", "Notes", "send", "only", "bar"}), walked(30'000, 2, 2));
  EXPECT_EQ(countsOf({"ax-press-exact", "Notes", "Nothing"}), walked(30'000, 0, 0));
}

TEST(round_trips, of_a_press_in_a_document_are_two_more) {
  // The button's label once more, and the press.
  EXPECT_EQ(countsOf({"ax-press-in-document", "Notes", "Chat", "Reply"}), walked(30'000, 2, 2));
}

TEST(round_trips, of_a_match_end_with_the_one_that_nothing_can_better) {
  // Five elements come behind the bar's button. A button without a label is read for its text. In
  // the end the value, or the press and the description; without a match, the point.
  EXPECT_EQ(countsOf({"ax-match", "Notes", "Send", "-1", "-1"}), walked(20'000, 1 + 1 - 5, 1));
  EXPECT_EQ(countsOf({"ax-press-match", "Notes", "Send", "-1", "-1"}),
            walked(20'000, 1 + 2 - 5, 1));
  EXPECT_EQ(countsOf({"ax-match", "Notes", "Sen", "-1", "-1"}), walked(20'000, 1 + 1, 1));
  EXPECT_EQ(countsOf({"ax-match", "Notes", "Nothing", "-1", "-1"}), walked(20'000, 1 + 1, 1));
}

TEST(round_trips, of_a_press_of_a_child_are_those_of_a_match_and_of_the_child) {
  // Nine elements are below the row or behind it. Its children, their actions, the text of the one
  // (three), the press, the row's description, the text again (three).
  EXPECT_EQ(countsOf({"ax-press-child", "Notes", "Row", "Open"}),
            walked(20'000, 1 + 1 + 3 + 1 + 1 + 3 - 9, 1));
}

TEST(round_trips, of_modals_are_one_more_for_each_static_text) {
  EXPECT_EQ(countsOf({"ax-modal", "Notes"}), walked(20'000, 1, 0));
  EXPECT_EQ(countsOf({"ax-modal-press", "Notes", "Sure?", "Yes"}), walked(20'000, 2, 0));
}

TEST(round_trips, of_popup_items_are_one_more_for_each_value) {
  EXPECT_EQ(countsOf({"ax-popup-items", "Notes"}), walked(20'000, 2, 2));
}

TEST(round_trips, of_a_slider_are_one_more_for_its_reading) {
  EXPECT_EQ(countsOf({"ax-slider", "Notes", "Size"}), walked(20'000, 1, 0));
  EXPECT_EQ(countsOf({"ax-slider", "Notes", "Size", "increment"}), walked(20'000, 2, 0));
}

TEST(round_trips, of_a_search_for_the_focus_are_one_before_it_and_those_of_a_description) {
  // What the walk has not read of the field; its inner text, and the selection.
  EXPECT_EQ(countsOf({"ax-focused", "Notes"}), walked(20'000, 1 + 4, 1));
}

/// A menu bar with one item, and this many in its menu.
std::string menuOf(int items) {
  return "    app Notes pid 41\n        AXMenuBar\n            AXMenuBarItem \"File\"\n"
         "                AXMenu\n                    AXMenuItem \"New\" repeat " +
         std::to_string(items) + "\n";
}

TEST(round_trips, of_menus_are_one_for_each_title_and_two_for_each_level) {
  for (const int size : sizes) {
    // Two to enable, the bar, its items; the title, its menus and their items.
    const std::int64_t opening = 2 + 1 + 1 + 1 + 1 + 1;
    EXPECT_EQ(messagesOf(menuOf(size), {"ax-menu", "Notes", "File", "None"}),
              opening + std::min(size, 20'000));
    // The first title, whether it is enabled, and the press.
    EXPECT_EQ(messagesOf(menuOf(size), {"ax-menu", "Notes", "File", "New"}), opening + 3);
    EXPECT_EQ(messagesOf("    app Notes pid 41\n        AXMenuBar\n"
                         "            AXMenuBarItem \"File\" repeat " +
                             std::to_string(size) + "\n",
                         {"ax-menubar", "Notes"}),
              2 + 1 + 1 + std::min(size, 20'000));
  }
}

TEST(round_trips, of_several_menus_of_an_item_are_those_of_20000_items_together) {
  const char* world = R"(
    app Notes pid 41
        AXMenuBar
            AXMenuBarItem "File"
                AXMenu
                    AXMenuItem repeat 19999
                AXMenu
                    AXMenuItem "Last"
                    AXMenuItem "Beyond"
)";
  TestMac mac(world);
  EXPECT_EQ(seen(mac.driver("ax-menu Notes File Last")),
            success(R"({"axError":0,"ok":true,"pressed":"File > Last"})"));
  EXPECT_EQ(
      seen(mac.driver("ax-menu Notes File Beyond")),
      success(R"({"error":"no menu item \"Beyond\" under File; available: Last","ok":false})"));
}

}  // namespace
