#include "simulator/text/addition.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/elements.h"

namespace simulator {

namespace {

constexpr const char* chat = R"(
    define Bubble(who, text)
        AXGroup {who} below previous gap 4 height 30 fill width
            AXStaticText value {text} inside 5
            AXButton "Like {text}" press: set Status {text}
    app Chat pid 40
        window 7 "Chat" at 0,0 size 400x300
            AXList "Conversation" at 10,10 size 300x200
                use Bubble("Ada", "Hello")
            AXStaticText "Status"
)";

Token text(const char* text) { return {Token::Kind::text, text}; }

TEST(addDefined, adds_what_a_body_says_as_the_last_children) {
  World world = parseWorld(chat);
  Application& application = world.applications[0];
  const ElementId list = findLabelled(application, "Conversation")->id;

  const auto added =
      addDefined(world, 0, list, {"Bubble", {text("Grace"), text("Hi")}, {5, nullptr}});

  ASSERT_EQ(added.size(), 1U);
  const Element& bubble = *findElement(application, added[0]);
  EXPECT_EQ(bubble.frame, (Rect{10, 44, 300, 30}));
  EXPECT_EQ(bubble.parent, list);
  EXPECT_EQ(bubble.window, 7U);
  EXPECT_EQ(labelOf(bubble), "Grace");
  EXPECT_EQ(findElement(application, list)->children.back(), added[0]);
  EXPECT_EQ(findElement(application, bubble.children[0])->attributes.at("AXValue"),
            AttributeValue(std::string("Hi")));
  EXPECT_EQ(findLabelled(application, "Like Hi")->onClick.size(), 1U);
}

TEST(addDefined, adds_nothing_when_the_body_names_what_is_not_there) {
  World world = parseWorld(chat);
  Application& application = world.applications[0];
  removeElement(application, findLabelled(application, "Status")->id);
  const ElementId list = findLabelled(application, "Conversation")->id;
  const auto children = findElement(application, list)->children;

  try {
    addDefined(world, 0, list, {"Bubble", {text("Grace"), text("3")}, {12, nullptr}});
    FAIL();
  } catch (const WorldError& error) {
    EXPECT_EQ(std::string(error.what()),
              "line 5: no element of Chat is labelled \"Status\" (used in line 12)");
  }

  EXPECT_EQ(findElement(application, list)->children, children);
  EXPECT_EQ(findLabelled(application, "Like 3"), nullptr);
}

TEST(addDefined, takes_a_call_that_fits_alone) {
  World world = parseWorld(chat);

  EXPECT_THROW(addDefined(world, 0, 1, {"Bubble", {text("Grace")}, {}}), WorldError);
  EXPECT_THROW(addDefined(world, 0, 1, {"Bubbel", {}, {}}), WorldError);
}

}  // namespace

}  // namespace simulator
