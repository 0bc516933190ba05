#include "accessibility/element.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

using Texts = std::vector<std::string>;

constexpr const char* elementDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20 actions AXPress,AXShowMenu
            AXTextArea "Body" value "hello"
)";

constexpr const char* enabling =
    "    0 ms  write 41/0 AXManualAccessibility true\n    0 ms  write 41/0 AXEnhancedUserInterface "
    "true\n";

TEST(axApp, asks_the_application_for_its_whole_tree) {
  TestMac mac(elementDesk);
  const Result run = runInside(mac, [] { EXPECT_EQ(ax::pid(axApp("Notes")), 41); });
  EXPECT_EQ(run.effects, enabling);
  EXPECT_EQ(run.calls, (Texts{"workspace.applications-with-bundle", "workspace.applications",
                              "ax.set-attribute", "ax.set-attribute"}));
  EXPECT_EQ(callsOf(mac, platform::Function::axSetAttribute),
            (Texts{"ax.set-attribute [41 0] \"AXManualAccessibility\" [2 true] -> [0 false]",
                   "ax.set-attribute [41 0] \"AXEnhancedUserInterface\" [2 true] -> [0 false]"}));
}

TEST(axApp, asks_each_time) {
  TestMac mac(elementDesk);
  EXPECT_EQ(runInside(mac,
                      [] {
                        axApp("pid:41");
                        axApp("com.example.notes");
                      })
                .effects,
            std::string(enabling) + enabling);
}

TEST(axApp, does_not_mind_a_refusal) {
  TestMac mac(elementDesk, {"ax.set-attribute 1+ error -25205"});
  const Result run = runInside(mac, [] { EXPECT_EQ(ax::pid(axApp("Notes")), 41); });
  EXPECT_EQ(run.calls.size(), 4U);
}

TEST(axApp, fails_for_an_application_that_does_not_run) {
  TestMac mac(elementDesk);
  for (const char* name : {"Nobody", "notes", "pid:99", "", " Notes"}) {
    const Result run = runInside(mac, [&] { axApp(name); });
    EXPECT_EQ(seen(run), failure("app not running: " + std::string(name)));
    EXPECT_EQ(run.effects, "");
  }
}

TEST(axAttr, is_the_value) {
  TestMac mac(elementDesk);
  runInside(mac, [&] {
    const auto value = axAttr(elementOf(mac, "Notes", "Body"), "AXValue");
    ASSERT_TRUE(value);
    EXPECT_EQ(*value->get<std::string>(), "hello");
    const auto position = axAttr(elementOf(mac, "Notes", "Send"), "AXPosition");
    ASSERT_TRUE(position);
    EXPECT_EQ(*position->get<Point>(), (Point{120, 90}));
  });
}

TEST(axAttr, is_absent_on_any_error) {
  for (const char* fault :
       {"ax.attribute 1 error -25200", "ax.attribute 1 error -25202", "ax.attribute 1 error -25204",
        "ax.attribute 1 error -25205", "ax.attribute 1 error -25211", "ax.attribute 1 error -25212",
        "ax.attribute 1 hang"}) {
    TestMac mac(elementDesk, {fault});
    runInside(mac,
              [&] { EXPECT_FALSE(axAttr(elementOf(mac, "Notes", "Body"), "AXValue")) << fault; });
  }
  TestMac mac(elementDesk);
  runInside(mac, [&] {
    EXPECT_FALSE(axAttr(elementOf(mac, "Notes", "Body"), "AXNothing"));
    EXPECT_FALSE(axAttr(elementOf(mac, "Notes", "Send"), "AXValue"));  // without a value
  });
}

TEST(axElement, is_an_attribute_that_is_an_element) {
  TestMac mac(elementDesk);
  runInside(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    const auto window = axElement(send, "AXWindow");
    ASSERT_TRUE(window);
    EXPECT_EQ(ax::hash(*window), ax::hash(elementOf(mac, "Notes", "Inbox")));
    EXPECT_FALSE(axElement(send, "AXTitle"));
    EXPECT_FALSE(axElement(send, "AXNothing"));
  });
}

TEST(axTexts, are_those_that_are_texts_in_the_order_of_the_names) {
  TestMac mac(R"(
    app Notes pid 41
        window 7 "W" at 0,0 size 99x99
            AXButton "Send" help "" description "Sends" value 5
)");
  const Result run = runInside(mac, [&] {
    EXPECT_EQ(axTexts(elementOf(mac, "Notes", "Send"),
                      {"AXHelp", "AXValue", "AXNothing", "AXDescription", "AXTitle", "AXSubrole"}),
              (Texts{"", "Sends", "Send"}));
  });
  EXPECT_EQ(run.calls, Texts{"ax.attributes"});
}

TEST(axTexts, are_none_when_nothing_can_be_read) {
  TestMac mac(elementDesk, {"ax.attributes 1 error -25202"});
  runInside(mac, [&] {
    EXPECT_EQ(axTexts(elementOf(mac, "Notes", "Send"), {"AXTitle", "AXHelp"}), Texts{});
  });
}

TEST(axActions, are_the_names_in_the_platforms_order) {
  TestMac mac(elementDesk);
  runInside(mac, [&] {
    EXPECT_EQ(axActions(elementOf(mac, "Notes", "Send")), (Texts{"AXPress", "AXShowMenu"}));
    EXPECT_EQ(axActions(elementOf(mac, "Notes", "Body")), Texts{});
  });
}

TEST(axActions, are_none_when_they_cannot_be_read) {
  for (const char* fault : {"ax.action-names 1 error -25202", "ax.action-names 1 hang"}) {
    TestMac mac(elementDesk, {fault});
    runInside(mac,
              [&] { EXPECT_EQ(axActions(elementOf(mac, "Notes", "Send")), Texts{}) << fault; });
  }
}

TEST(elementsIn, are_the_elements_of_a_list_of_nothing_else) {
  TestMac mac(elementDesk);
  runInside(mac, [&] {
    const ax::Value send{elementOf(mac, "Notes", "Send")};
    const ax::Value body{elementOf(mac, "Notes", "Body")};
    const ax::Value text{std::string("text")};
    const auto count = [](std::vector<ax::Value> values) {
      return elementsIn(ax::Value{std::move(values)}).size();
    };
    EXPECT_EQ(count({send, body}), 2U);
    EXPECT_EQ(count({}), 0U);
    EXPECT_EQ(count({send, text}), 0U);
    EXPECT_EQ(elementsIn(send).size(), 0U);
    EXPECT_EQ(elementsIn(text).size(), 0U);
    EXPECT_EQ(elementsIn(std::nullopt).size(), 0U);
  });
}

}  // namespace
}  // namespace driver
