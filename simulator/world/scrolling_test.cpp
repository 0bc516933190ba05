#include "simulator/world/scrolling.h"

#include <gtest/gtest.h>

#include "simulator/drawing/digest.h"
#include "simulator/drawing/pictures.h"
#include "simulator/mac/mac.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/world/actions.h"
#include "simulator/world/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/presses.h"
#include "tests/support/attribute_values.h"

namespace simulator {

namespace {

constexpr const char* listLines = R"(
            AXTable "Table" at 10,50 size 200x200 stacks
                AXRow "One" at 10,50 size 200x50 press: set Log "one"
                AXRow "Two" at 10,100 size 200x50 press: set Log "two"
                AXRow "Three" at 10,150 size 200x50 press: set Log "three"
                    AXButton "Delete" at 180,160 size 20x20 actions AXPress press: remove Three
                AXRow "Four" at 10,200 size 200x50 press: set Log "four"
        AXButton "Below" at 10,160 size 200x40 press: set Log "below"
        AXStaticText "Log" at 10,260 size 200x20
)";

class scrolling : public testing::Test {
 protected:
  /// An area of 200 by 100 points that shows two of four rows.
  void begin(const std::string& habit) {
    mac_.world = parseWorld(
        "app Mail pid 41 frontmost\n"
        "    window 7 \"Inbox\" at 0,0 size 300x300\n"
        "        AXScrollArea \"Area\" at 10,50 size 200x100 " +
        habit + listLines);
  }

  World& world() { return mac_.world; }
  Application& mail() { return world().applications[0]; }
  const Element& labelled(const std::string& label) { return *findLabelled(mail(), label); }
  void happen(const std::string& text) { simulator::happen(mac_, parseHappening(text, world())); }

  AttributeResult read(const std::string& label, const std::string& name) {
    return readAttribute(world(), mail(), labelled(label).id, name, 0);
  }
  std::string listedBy(const std::string& label, const std::string& name) {
    std::string text;
    const AttributeResult result = read(label, name);
    for (const ElementId id : std::get<std::vector<ElementId>>(result.value.value())) {
      text += (text.empty() ? "" : " ") + labelOf(*findElement(mail(), id));
    }
    return text;
  }
  std::string hitAt(Point point) {
    const Element* element = findElement(mail(), elementAt(mail(), *findWindow(world(), 7), point));
    return element == nullptr ? "" : labelOf(*element);
  }
  ElementId bar() { return std::get<ElementLink>(*read("Area", "AXVerticalScrollBar").value).id; }
  AttributeValue barValue() { return *readAttribute(world(), mail(), bar(), "AXValue", 0).value; }
  ax::Error writeBar(const AttributeValue& value) {
    return writeAttribute(world(), mail(), bar(), "AXValue", value, 0);
  }
  std::string performed(const std::string& label, const std::string& action) {
    return perform(world(), 41, labelled(label).id, action).outcome;
  }
  double topOf(const std::string& label) { return labelled(label).frame->y; }
  std::uint64_t seen() {
    Picture picture;
    picture.width = picture.height = 300;
    picture.source = {0, 0, 300, 300};
    picture.windows = {pictureOf(world(), *findWindow(world(), 7))};
    return digest(picture);
  }

  Mac mac_{World(), 0, {}, 0, {}};
};

TEST_F(scrolling, what_is_out_of_sight_cannot_be_hit_nor_seen) {
  begin("scrolls");
  EXPECT_EQ(hitAt({20, 60}), "One");
  EXPECT_EQ(hitAt({20, 140}), "Two");
  EXPECT_EQ(hitAt({20, 170}), "Below");
  const std::uint64_t before = seen();
  happen("in Mail relabel Four \"Fourth\"");

  EXPECT_EQ(seen(), before);
  happen("in Mail relabel Two \"Second\"");
  EXPECT_NE(seen(), before);
}

TEST_F(scrolling, the_users_wheel_moves_what_is_under_the_pointer) {
  begin("scrolls");
  happen("user move 20,100");
  const std::uint64_t before = seen();
  happen("user scroll 0,-2");

  EXPECT_EQ(topOf("One"), 16);
  EXPECT_EQ(topOf("Delete"), 126);
  EXPECT_EQ(hitAt({20, 60}), "One");
  EXPECT_EQ(hitAt({20, 149}), "Three");
  EXPECT_EQ(barValue(), AttributeValue(0.34));
  EXPECT_NE(seen(), before);
  EXPECT_EQ(findWindow(world(), 7)->scrolledLines, (Point{0, 0}));
  happen("user scroll 0,2");
  EXPECT_EQ(seen(), before);
  happen("user scroll 0,2");
  EXPECT_EQ(topOf("One"), 50);
  EXPECT_EQ(mac_.arrived.back(), "Mail: AXScrollArea \"Area\" has no room to scroll");
}

TEST_F(scrolling, elsewhere_a_scroll_is_the_windows) {
  begin("scrolls");
  happen("user move 20,280");
  happen("user scroll 0,-2");

  EXPECT_EQ(topOf("One"), 50);
  EXPECT_EQ(findWindow(world(), 7)->scrolledLines, (Point{0, -2}));
}

TEST_F(scrolling, a_bar_tells_and_takes_a_part_of_the_way) {
  begin("scrolls");
  EXPECT_EQ(barValue(), AttributeValue(0.0));
  EXPECT_EQ(writeBar(1.0), ax::Error::success);
  EXPECT_EQ(topOf("Four"), 100);
  EXPECT_EQ(writeBar(0.5), ax::Error::success);
  EXPECT_EQ(topOf("One"), 0);
  EXPECT_EQ(barValue(), AttributeValue(0.5));
  EXPECT_EQ(writeBar(7.0), ax::Error::success);
  EXPECT_EQ(barValue(), AttributeValue(1.0));
  EXPECT_EQ(writeBar(std::string("down")), ax::Error::illegalArgument);
  EXPECT_EQ(read("Area", "AXHorizontalScrollBar").error, ax::Error::attributeUnsupported);
}

TEST_F(scrolling, an_element_is_scrolled_to) {
  begin("scrolls");
  EXPECT_EQ(performed("Four", "AXScrollToVisible"), "scrolled to AXRow \"Four\"");
  EXPECT_EQ(topOf("Four"), 100);
  EXPECT_EQ(performed("Three", "AXScrollToVisible"), "scrolled to AXRow \"Three\"");
  EXPECT_EQ(topOf("Three"), 50);
  EXPECT_EQ(performed("Two", "AXScrollToVisible"), "scrolled to AXRow \"Two\"");
  EXPECT_EQ(topOf("Two"), 50);
  EXPECT_EQ(actionNames(mail(), labelled("One").id),
            (std::vector<std::string>{"AXPress", "AXScrollToVisible"}));
  EXPECT_EQ(actionNames(mail(), labelled("Delete").id), std::vector<std::string>{"AXPress"});
  EXPECT_EQ(performed("Below", "AXScrollToVisible"), "AXButton \"Below\" has no AXScrollToVisible");
}

TEST_F(scrolling, a_table_tells_which_of_its_rows_are_in_sight) {
  begin("scrolls");
  EXPECT_EQ(listedBy("Table", "AXRows"), "One Two Three Four");
  EXPECT_EQ(listedBy("Table", "AXVisibleRows"), "One Two");
  writeBar(0.5);
  EXPECT_EQ(listedBy("Table", "AXVisibleRows"), "Two Three");
  EXPECT_EQ(listedBy("Table", "AXVisibleChildren"), "Two Three");
  EXPECT_EQ(listedBy("Table", "AXChildren"), "One Two Three Four");
}

TEST_F(scrolling, a_lazy_area_has_only_what_is_in_sight) {
  begin("scrolls lazily");
  EXPECT_EQ(listedBy("Table", "AXChildren"), "One Two");
  EXPECT_EQ(listedBy("Table", "AXRows"), "One Two");
  EXPECT_EQ(read("Three", "AXTitle").error, ax::Error::invalidElement);
  EXPECT_EQ(read("Delete", "AXTitle").error, ax::Error::invalidElement);
  EXPECT_EQ(perform(world(), 41, labelled("Delete").id, "AXPress").error,
            ax::Error::invalidElement);
  writeBar(0.5);

  EXPECT_EQ(listedBy("Table", "AXChildren"), "Two Three");
  EXPECT_EQ(read("One", "AXTitle").error, ax::Error::invalidElement);
  EXPECT_EQ(*read("Three", "AXTitle").value, testing_support::text("Three"));
}

TEST_F(scrolling, what_goes_leaves_no_gap_at_the_end) {
  begin("scrolls");
  writeBar(1.0);
  happen("in Mail remove Three; remove One");

  EXPECT_EQ(topOf("Two"), 50);
  EXPECT_EQ(topOf("Four"), 100);
  EXPECT_EQ(*labelled("Table").frame, (Rect{10, 50, 200, 100}));
  EXPECT_EQ(barValue(), AttributeValue(0.0));
}

TEST_F(scrolling, a_menu_lies_over_its_area) {
  mac_.world = parseWorld(R"(
    app Mail pid 41
        window 7 "Inbox" at 0,0 size 300x300
            AXScrollArea "Area" at 0,0 size 200x40 scrolls
                AXPopUpButton "Size" at 0,10 size 100x24 choices "Small" "Large"
                AXStaticText "Foot" at 0,60 size 200x10)");
  simulator::press(world(), mail(), labelled("Size").id);
  EXPECT_EQ(hitAt({5, 60}), "Large");
  scrollOver(mail(), labelled("Size").id, {0, -1});

  EXPECT_EQ(hitAt({5, 43}), "Large");
}

TEST_F(scrolling, areas_within_areas_move_first) {
  mac_.world = parseWorld(R"(
    app Mail pid 41
        window 7 "Inbox" at 0,0 size 300x300
            AXScrollArea "Outer" at 0,0 size 200x100 scrolls
                AXScrollArea "Inner" at 0,10 size 200x50 scrolls
                    AXStaticText "Text" at 0,10 size 200x60
                AXStaticText "Foot" at 0,190 size 200x10)");
  const auto over = [&](double lines) {
    return scrollOver(mail(), labelled("Text").id, {0, lines}).value_or("");
  };

  EXPECT_EQ(over(-1), "scrolled AXScrollArea \"Inner\" by 0,10");
  EXPECT_EQ(over(-1), "scrolled AXScrollArea \"Outer\" by 0,17");
  EXPECT_EQ(topOf("Text"), -17);
  EXPECT_EQ(topOf("Inner"), -7);
  EXPECT_EQ(hitAt({5, 45}), "Outer");
  performed("Foot", "AXScrollToVisible");
  EXPECT_EQ(topOf("Foot"), 90);
  mail().hangs = true;
  EXPECT_EQ(over(1), "scrolled an application that hangs");
}

}  // namespace

}  // namespace simulator
