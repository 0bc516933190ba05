#include "simulator/world/arranging.h"

#include <gtest/gtest.h>

#include "simulator/drawing/pictures.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/world/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/presses.h"
#include "simulator/world/reactions.h"

namespace simulator {

namespace {

constexpr const char* listDesk = R"(
    app Mail pid 41
        window 7 "Inbox" at 0,0 size 400x400
            AXList "List" at 0,0 size 200x200 stacks
                AXRow "One" at 0,10 size 200x20 press: set Log "one"
                    AXStaticText "First" at 5,12 size 90x16
                AXRow "Two" at 0,34 size 200x40 press: set Log "two"
                AXRow "Three" at 0,78 size 200x20 press: set Log "three"
            AXGroup "Plain" at 200,0 size 200x200
                AXRow "Four" at 200,10 size 200x20 press: set Log "four"
                AXRow "Five" at 200,30 size 200x20 press: set Log "five"
            AXStaticText "Log" at 0,300 size 100x20
        AXGroup "Loose" at 500,0 size 9x9
)";

class arranging : public testing::Test {
 protected:
  /// The application does so by itself; gives what it has to say.
  std::string act(const std::string& reaction) {
    const Happening happening = parseHappening("in Mail " + reaction, world_);
    const Reaction& first = happening.reactions.front();
    return first.effect({world_, mail(), 0, first});
  }

  Application& mail() { return world_.applications[0]; }
  Element& labelled(const std::string& label) { return *findLabelled(mail(), label); }

  /// Its children, each with where it begins: "One 10, Two 34".
  std::string childrenOf(const std::string& label) {
    std::string text;
    for (const ElementId id : labelled(label).children) {
      const Element& child = *findElement(mail(), id);
      text += (text.empty() ? "" : ", ") + labelOf(child) + " " +
              std::to_string(static_cast<int>(child.frame->y));
    }
    return text;
  }

  std::string hitAt(Point point) {
    const Element* element = findElement(mail(), elementAt(mail(), *findWindow(world_, 7), point));
    return element == nullptr ? "" : labelOf(*element);
  }

  World world_ = parseWorld(listDesk);
};

TEST_F(arranging, a_stack_closes_up_when_one_goes) {
  EXPECT_EQ(act("remove One"), "");

  EXPECT_EQ(childrenOf("List"), "Two 10, Three 54");
  EXPECT_EQ(hitAt({5, 15}), "Two");
  EXPECT_EQ(readAttribute(world_, mail(), 3, "AXTitle", 0).error, ax::Error::invalidElement);
  EXPECT_EQ(readAttribute(world_, mail(), 4, "AXValue", 0).error, ax::Error::invalidElement);
  act("remove Three");
  EXPECT_EQ(childrenOf("List"), "Two 10");
}

TEST_F(arranging, what_goes_may_be_named_by_a_value) {
  labelled("Log").attributes["AXValue"] = std::string("Two");
  const auto actLive = [&](const std::string& reaction) {
    const Happening happening = parseHappening("in Mail " + reaction, world_);
    EXPECT_EQ(happeningText(happening, &world_), "in Mail " + reaction);
    return reactByItself(world_, 41, happening.reactions);
  };

  EXPECT_EQ(actLive("remove value of Log"), std::vector<std::string>());
  EXPECT_EQ(childrenOf("List"), "One 10, Three 34");
  EXPECT_EQ(actLive("remove value of Log"),
            std::vector<std::string>{"finds nothing labelled \"Two\""});
  actLive("relabel Log \"value\"; remove One");
  EXPECT_EQ(actLive("remove \"value\""), std::vector<std::string>());
}

TEST_F(arranging, others_stay_where_they_are) {
  act("remove Four");

  EXPECT_EQ(childrenOf("Plain"), "Five 30");
}

TEST_F(arranging, a_row_moves_with_what_is_in_it_and_stays_itself) {
  const ElementId id = labelled("One").id;
  EXPECT_EQ(act("move One below Two"), "");

  EXPECT_EQ(childrenOf("List"), "Two 10, One 54, Three 78");
  EXPECT_EQ(labelled("One").id, id);
  EXPECT_EQ(*labelled("First").frame, (Rect{5, 56, 90, 16}));
  EXPECT_EQ(hitAt({8, 60}), "First");
  act("move Three above Two");
  EXPECT_EQ(childrenOf("List"), "Three 10, Two 34, One 78");
}

TEST_F(arranging, a_row_moves_into_another_list) {
  act("move Five above Two");
  EXPECT_EQ(childrenOf("List"), "One 10, Five 34, Two 58, Three 102");
  EXPECT_EQ(childrenOf("Plain"), "Four 10");
  EXPECT_EQ(labelled("Five").frame->x, 0);
  EXPECT_EQ(simulator::click(world_, 41, 7, {100, 40}, false), "pressed AXRow \"Five\"");

  act("move Two below Four");
  EXPECT_EQ(childrenOf("List"), "One 10, Five 34, Three 58");
  EXPECT_EQ(childrenOf("Plain"), "Four 10, Two 58");
}

TEST_F(arranging, an_element_moves_to_a_place) {
  act("move Two to 20,100");

  EXPECT_EQ(*labelled("Two").frame, (Rect{20, 100, 200, 40}));
  EXPECT_EQ(labelled("Two").parent, labelled("List").id);
}

TEST_F(arranging, what_moved_further_down_in_the_text_lies_in_front) {
  act("move Plain to 0,0");
  EXPECT_EQ(hitAt({5, 15}), "Four");
  act("move Plain above List");
  EXPECT_EQ(hitAt({5, 15}), "First");
  EXPECT_EQ(pictureOf(world_, *findWindow(world_, 7)).elements.front().attributes.at("AXTitle"),
            AttributeValue(std::string("Plain")));
}

TEST_F(arranging, what_a_body_says_comes_into_a_list) {
  world_ = parseWorld(R"(
    define Message(who, text)
        AXRow {who} at 0,0 size 200x30 press: set Log {text}
            AXStaticText at 5,5 size 190x20 value {text}
    app Mail pid 41
        window 7 "Inbox" at 0,0 size 400x400
            AXScrollArea "Area" at 0,10 size 200x80 scrolls
                AXList "List" at 0,10 size 200x44 stacks
                    AXRow "One" at 0,10 size 200x20
                    AXRow "Two" at 0,34 size 200x20
            AXTextField "Draft" value "Hello"
            AXStaticText "Log"
    at 1s in Mail add Message("Later", value of Draft) to List; set Log "x"; remove Later
)");
  const auto actLive = [&](const std::string& reaction) {
    return reactByItself(world_, 41, parseHappening("in Mail " + reaction, world_).reactions);
  };
  EXPECT_EQ(actLive("add Message(\"Three\", value of Draft) to List"), std::vector<std::string>());
  EXPECT_EQ(childrenOf("List"), "One 10, Two 34, Three 58");
  EXPECT_EQ(*labelled("List").frame, (Rect{0, 10, 200, 78}));
  actLive("set Draft \"Bye\"; add Message(\"Zero\", value of Draft) above One");
  EXPECT_EQ(childrenOf("List"), "Zero 10, One 44, Two 68, Three 92");
  EXPECT_EQ(*findElement(mail(), labelled("Zero").children[0])->frame, (Rect{5, 15, 190, 20}));
  EXPECT_EQ(simulator::click(world_, 41, 7, {100, 20}, false), "pressed AXRow \"Zero\"");
  EXPECT_EQ(labelled("Log").attributes["AXValue"], AttributeValue(std::string("Bye")));
  actLive("add Message(\"Middle\", \"m\") below Two");
  EXPECT_EQ(childrenOf("List"), "Zero 10, One 44, Two 68, Middle 92, Three 126");
  EXPECT_EQ(
      actLive("remove Log; add Message(\"None\", \"n\") to List"),
      std::vector<std::string>{
          "can add nothing: line 3: no element of Mail is labelled \"Log\" (used in line 1)"});
  EXPECT_EQ(childrenOf("List"), "Zero 10, One 44, Two 68, Middle 92, Three 126");
}

TEST_F(arranging, what_cannot_be_says_so) {
  EXPECT_EQ(act("move List below One"), "finds AXRow \"One\" in what is moved");
  EXPECT_EQ(act("move One below One"), "finds AXRow \"One\" in what is moved");
  EXPECT_EQ(act("move One below Loose"), "finds nothing around AXGroup \"Loose\"");
  const Happening late = parseHappening("in Mail move One above Two", world_);
  act("remove Two");
  EXPECT_EQ(late.reactions[0].effect({world_, mail(), 0, late.reactions[0]}),
            "finds nothing labelled \"Two\"");
}

}  // namespace

}  // namespace simulator
