#include "simulator/text/addition.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/arranging.h"
#include "simulator/world/elements.h"
#include "simulator/world/presses.h"
#include "simulator/world/scrolling.h"

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

constexpr const char* mail = R"(
    define Letter(number, title)
        window {number} {title} at 40,40 size 300x200
            AXTextArea "Text of {title}" at 50,60 size 200x100 focused
            AXButton "Send {title}" at 50,200 size 60x20 press: close window {title}
    define Pages(count)
        AXScrollArea "Pages" at 10,50 size 200x100 scrolls
            repeat {count} as n
                AXRow "Page {n}" below previous height 50 fill width
    app Mail pid 40 frontmost
        window 7 "Inbox" at 0,0 size 400x300 focused
            AXTextField "Search" at 10,10 size 100x20 focused
            AXGroup "Body" at 10,50 size 200x100
            AXButton "New" at 10,270 size 60x20 press: open window Letter(new, "Draft")
    app Other pid 41
        window 8 "Else" at 0,0 size 400x300)";

std::vector<WindowNumber> order(const World& world) {
  std::vector<WindowNumber> numbers;
  for (const Window& each : world.windows) numbers.push_back(each.number);
  return numbers;
}

using Numbers = std::vector<WindowNumber>;

TEST(openDefined, opens_another_window_each_time_in_front_of_the_others) {
  World world = parseWorld(mail);
  Application& application = world.applications[0];

  for (const char* title : {"Draft", "Answer"}) {
    openDefined(world, 0, {"Letter", {{Token::Kind::word, "new"}, text(title)}, {}});
    EXPECT_EQ(labelOf(*findElement(application, application.focusedElement)),
              std::string("Text of ") + title);
    EXPECT_EQ(findElement(application, application.focusedWindow)->window, world.lastWindow);
  }

  EXPECT_EQ(order(world), (Numbers{10, 9, 7, 8}));
  EXPECT_EQ(findWindow(world, 9)->title, "Draft");
  EXPECT_EQ(findWindow(world, 10)->title, "Answer");
  EXPECT_EQ(application.windows.size(), 3U);
}

TEST(openDefined, opens_nothing_when_the_body_cannot_be_read) {
  World world = parseWorld(mail);
  Application& application = world.applications[0];
  const ElementId window = application.focusedWindow;
  const ElementId field = application.focusedElement;

  // The number is another window's.
  EXPECT_THROW(openDefined(world, 0, {"Letter", {{Token::Kind::word, "8"}, text("Draft")}, {}}),
               WorldError);
  // What closes is titled otherwise: told when the window is there already.
  World other = parseWorld(std::string(mail) + R"(
    define Wrong()
        window new "One" at 40,40 size 300x200
            AXButton "Close" press: set Nothing "x")");
  EXPECT_THROW(openDefined(other, 0, {"Wrong", {}, {}}), WorldError);

  EXPECT_EQ(order(world), (Numbers{7, 8}));
  EXPECT_EQ(order(other), (Numbers{7, 8}));
  EXPECT_EQ(application.focusedWindow, window);
  EXPECT_EQ(application.focusedElement, field);
  EXPECT_EQ(other.applications[0].focusedElement, field);
  EXPECT_EQ(findLabelled(other.applications[0], "Close"), nullptr);
}

TEST(openDefined, is_what_a_reaction_does) {
  World world = parseWorld(mail);
  Application& application = world.applications[0];
  const auto pressNew = [&] {
    return press(world, application, findLabelled(application, "New")->id);
  };

  EXPECT_EQ(pressNew(), "pressed AXButton \"New\"");
  EXPECT_EQ(order(world), (Numbers{9, 7, 8}));
  press(world, application, findLabelled(application, "Send Draft")->id);
  EXPECT_EQ(order(world), (Numbers{7, 8}));
  world.definitions = nullptr;
  EXPECT_EQ(pressNew(),
            "pressed AXButton \"New\", can open nothing: line 14: 'Letter' is defined nowhere");
}

TEST(addDefined, lets_areas_scroll) {
  World world = parseWorld(mail);
  Application& application = world.applications[0];
  const ElementId body = findLabelled(application, "Body")->id;

  addDefined(world, 0, body, {"Pages", {{Token::Kind::word, "4"}}, {}});
  placeLast(application, body, 1, 0);
  settleScrolling(application);

  ASSERT_EQ(application.scrollAreas.size(), 1U);
  const Element& area = *findElement(application, application.scrollAreas[0].id);
  EXPECT_EQ(labelOf(area), "Pages");
  const Element& bar = *findElement(application, application.scrollAreas[0].verticalBar);
  EXPECT_EQ(bar.frame, (Rect{195, 50, 15, 100}));
  EXPECT_EQ(bar.scrolledBy, 0);
  EXPECT_EQ(scrollOver(application, findLabelled(application, "Page 1")->id, {0, -20}),
            "scrolled AXScrollArea \"Pages\" by 0,100");
  EXPECT_EQ(findLabelled(application, "Page 3")->frame, (Rect{10, 50, 200, 50}));
  EXPECT_EQ(bar.attributes.at("AXValue"), AttributeValue(1.0));
}

}  // namespace

}  // namespace simulator
