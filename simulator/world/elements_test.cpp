#include "simulator/world/elements.h"

#include <gtest/gtest.h>

#include <set>

#include "simulator/text/parse.h"
#include "simulator/world/actions.h"
#include "simulator/world/attributes.h"
#include "simulator/world/presses.h"

namespace simulator {

namespace {

class element_trees : public testing::Test {
 protected:
  /// A world whose only window, number 7, at 0,0 and 400 by 300, has these lines in it.
  void build(const std::string& lines) {
    world_ = parseWorld("app Notes pid 41\n  window 7 \"Inbox\" at 0,0 size 400x300\n" + lines);
  }

  Application& notes() { return world_.applications[0]; }
  ElementId idOf(const std::string& label) { return findLabelled(notes(), label)->id; }
  AttributeResult read(ElementId id, const std::string& name) {
    return readAttribute(world_, notes(), id, name, 0);
  }
  std::vector<ElementId> children(ElementId id) {
    const auto result = read(id, "AXChildren");
    return result.value ? std::get<std::vector<ElementId>>(*result.value)
                        : std::vector<ElementId>();
  }

  World world_;
};

TEST_F(element_trees, the_contents_of_a_tab_are_there_only_while_it_is_chosen) {
  build(R"(
    AXTabGroup "Tabs" at 0,0 size 400x40
        AXRadioButton "General" at 0,0 size 100x20 value 1
        AXRadioButton "Mail" at 100,0 size 100x20
        AXGroup "General page" at 0,20 size 400x20 only while General is 1
            AXButton "Name" at 0,20 size 100x20
        AXGroup "Other page" at 0,20 size 400x20 only while General is not 1
            AXButton "Server" at 0,20 size 100x20)");
  const ElementId tabs = idOf("Tabs");
  const ElementId general = idOf("General page");
  const ElementId other = idOf("Other page");
  const Window& window = world_.windows[0];

  EXPECT_EQ(children(tabs), (std::vector<ElementId>{tabs + 1, tabs + 2, general}));
  EXPECT_EQ(elementAt(notes(), window, {5, 25}), idOf("Name"));
  click(world_, 41, 7, {110, 5}, false);

  EXPECT_EQ(children(tabs), (std::vector<ElementId>{tabs + 1, tabs + 2, other}));
  EXPECT_EQ(elementAt(notes(), window, {5, 25}), idOf("Server"));
  EXPECT_EQ(read(idOf("Name"), "AXTitle").error, ax::Error::invalidElement);
  EXPECT_EQ(read(general, "AXTitle").error, ax::Error::invalidElement);
}

TEST_F(element_trees, a_combo_box_has_a_list_while_it_is_open) {
  build(R"(
    AXComboBox "Size" at 0,0 size 100x24 choices "Small" "Large" value "Other"
    AXButton "Below" at 0,24 size 100x60)");
  const ElementId box = idOf("Size");
  const ElementId button = box + 1;
  const ElementId list = box + 2;
  const Window& window = world_.windows[0];

  EXPECT_EQ(children(box), std::vector<ElementId>{button});
  EXPECT_EQ(*read(box, "AXExpanded").value, AttributeValue(false));
  EXPECT_EQ(elementAt(notes(), window, {5, 50}), idOf("Below"));
  EXPECT_EQ(perform(world_, 41, button, "AXPress").outcome, "pressed AXButton");
  EXPECT_EQ(children(box), (std::vector<ElementId>{button, list}));
  EXPECT_EQ(*read(box, "AXExpanded").value, AttributeValue(true));
  EXPECT_EQ(*read(list + 2, "AXValue").value, AttributeValue(std::string("Large")));
  EXPECT_EQ(elementAt(notes(), window, {5, 50}), list + 2);
  EXPECT_EQ(click(world_, 41, 7, {5, 50}, false), "pressed AXStaticText");

  EXPECT_EQ(*read(box, "AXValue").value, AttributeValue(std::string("Large")));
  EXPECT_EQ(children(box), std::vector<ElementId>{button});
  click(world_, 41, 7, {95, 5}, false);
  EXPECT_EQ(click(world_, 41, 7, {5, 5}, false), "closed a menu");
  EXPECT_EQ(click(world_, 41, 7, {5, 5}, false), "focused AXComboBox \"Size\"");
}

TEST_F(element_trees, controls_of_a_row_are_there_only_while_the_pointer_is_over_it) {
  build(R"(
    AXRow "First" at 0,0 size 400x40
        AXStaticText value "text"
        AXGroup at 300,0 size 100x40 while hovered
            AXButton "Delete" at 300,0 size 40x40
    AXRow "Second" at 0,40 size 400x40)");
  const ElementId row = idOf("First");
  const ElementId remove = idOf("Delete");
  Window& window = world_.windows[0];

  EXPECT_EQ(children(row), std::vector<ElementId>{row + 1});
  EXPECT_EQ(read(remove, "AXTitle").error, ax::Error::invalidElement);
  EXPECT_EQ(elementAt(notes(), window, {310, 10}), row);
  window.hover = Point{10, 50};
  EXPECT_EQ(children(row), std::vector<ElementId>{row + 1});
  window.hover = Point{10, 10};
  EXPECT_EQ(children(row), (std::vector<ElementId>{row + 1, row + 2}));
  EXPECT_EQ(children(row + 2), std::vector<ElementId>{remove});
  EXPECT_EQ(elementAt(notes(), window, {310, 10}), remove);
  EXPECT_EQ(writeAttribute(world_, notes(), remove, "AXTitle", std::string("Keep"), 0),
            ax::Error::success);
  window.hover.reset();
  EXPECT_EQ(writeAttribute(world_, notes(), remove, "AXTitle", std::string("Keep"), 0),
            ax::Error::invalidElement);
}

TEST_F(element_trees, what_is_there_while_hovered_can_hold_more_of_its_kind) {
  build(R"(
    AXRow "Outer" at 0,0 size 400x40
        AXGroup "Middle" at 0,0 size 200x40 while hovered
            AXButton "Inner" at 0,0 size 100x40 while hovered)");
  Window& window = world_.windows[0];

  window.hover = Point{250, 10};
  EXPECT_EQ(read(idOf("Inner"), "AXRole").error, ax::Error::invalidElement);
  EXPECT_EQ(children(idOf("Outer")), std::vector<ElementId>{idOf("Middle")});
  window.hover = Point{150, 10};
  EXPECT_EQ(read(idOf("Inner"), "AXRole").error, ax::Error::success);
}

TEST_F(element_trees, an_element_can_stand_under_several) {
  build(R"(
    AXTable "Table"
        AXRow "Row 1"
            AXCell "Cell" also under "Column A" also under Header
        AXColumn "Column A"
        AXGroup "Header")");
  const ElementId cell = idOf("Cell");

  for (const char* label : {"Row 1", "Column A", "Header"}) {
    EXPECT_EQ(children(idOf(label)), std::vector<ElementId>{cell}) << label;
  }
  EXPECT_EQ(*read(cell, "AXParent").value, AttributeValue(ElementLink{idOf("Row 1")}));
}

TEST_F(element_trees, an_element_can_stand_under_itself) {
  build("    AXGroup \"A\"\n      AXGroup \"B\" also under \"B\"\n        AXButton \"C\"");

  EXPECT_EQ(children(idOf("B")), (std::vector<ElementId>{idOf("C"), idOf("B")}));
  removeElement(notes(), idOf("A"));
  EXPECT_EQ(findLabelled(notes(), "C"), nullptr);
}

TEST_F(element_trees, copies_share_everything_but_their_identity) {
  build(R"(
    AXList "List"
        AXRow "Row" at 0,0 size 10x10 repeat 1000000
            AXButton "In it"
        AXRow "Other" repeat 2)");
  const std::vector<ElementId> rows = children(idOf("List"));
  const ElementId last = rows[999'999];

  ASSERT_EQ(rows.size(), 1'000'002u);
  EXPECT_EQ(notes().elements.size(), 5u);
  EXPECT_EQ(std::set<ElementId>(rows.begin(), rows.end()).size(), rows.size());
  EXPECT_EQ(*read(last, "AXTitle").value, AttributeValue(std::string("Row")));
  EXPECT_EQ(children(last), std::vector<ElementId>{idOf("In it")});
  EXPECT_EQ(*read(rows.back(), "AXTitle").value, AttributeValue(std::string("Other")));
  EXPECT_EQ(read(rows.back() + 1, "AXTitle").error, ax::Error::invalidElement);
  const Performed done = perform(world_, 41, last, "AXPress");
  EXPECT_EQ(done.error, ax::Error::success);
  EXPECT_EQ(done.outcome, "pressed AXRow \"Row\", which does nothing");
}

TEST_F(element_trees, grow_and_shrink_after_each_read_of_the_children) {
  build(R"(
    AXList "Wide" grows
        AXRow "Row"
    AXGroup "Deep" grows deeper
    AXList "Narrow" shrinks
        AXRow "One"
        AXRow "Two")");
  const auto readAndChange = [&](ElementId id) {
    const std::vector<ElementId> read = children(id);
    afterChildrenWereRead(notes(), id);
    return read;
  };

  const ElementId wide = idOf("Wide");
  EXPECT_EQ(readAndChange(wide).size(), 1u);
  EXPECT_EQ(readAndChange(wide).size(), 2u);
  const ElementId added = children(wide).back();
  EXPECT_EQ(*read(added, "AXRole").value, AttributeValue(std::string("AXRow")));
  EXPECT_EQ(readAndChange(added).size(), 0u);
  EXPECT_EQ(readAndChange(added).size(), 0u);

  const ElementId deep = idOf("Deep");
  EXPECT_EQ(readAndChange(deep).size(), 0u);
  const ElementId below = children(deep).back();
  EXPECT_EQ(readAndChange(below).size(), 0u);
  EXPECT_EQ(readAndChange(below).size(), 1u);

  const ElementId narrow = idOf("Narrow");
  const ElementId two = idOf("Two");
  EXPECT_EQ(readAndChange(narrow).size(), 2u);
  EXPECT_EQ(read(two, "AXTitle").error, ax::Error::invalidElement);
  EXPECT_EQ(readAndChange(narrow).size(), 1u);
  EXPECT_EQ(readAndChange(narrow).size(), 0u);
}

}  // namespace

}  // namespace simulator
