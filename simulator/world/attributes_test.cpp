#include "simulator/world/attributes.h"
#include "simulator/world/actions.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "tests/support/attribute_values.h"

namespace simulator {

namespace {

constexpr const char* notes = R"(
    app Browser pid 40 chromium frontmost tree after 500ms
        window 3 "Page" at 0,0 size 400x300
            AXWebArea
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXGroup "Bar" at 110,90 size 500x40
                AXButton "Send" at 120,90 size 60x20 failing AXHelp -25204
            AXTextArea "Body" at 120,130 size 700x400 value "hello" focused
            AXSlider "Volume" value 3
            AXButton "Liar" disabled attribute AXRole "AXBanana" attribute AXChildren elements "Send"
        window 8 at 0,0 size 50x50
            AXSheet at 5,5 size 40x20
                AXButton "OK"
        AXMenuBar
            AXMenuBarItem "File"
)";

enum : ElementId {
  inbox = 1,
  bar,
  send,
  body,
  volume,
  liar,
  untitled,
  sheet,
  ok,
  menuBar,
  fileMenu,
};

class application_elements : public testing::Test {
 protected:
  Application& application() { return *findApplication(world_, 41); }

  AttributeValue read(ElementId id, const std::string& name) {
    const AttributeResult result = readAttribute(world_, application(), id, name, 0);
    EXPECT_EQ(result.error, ax::Error::success) << name;
    EXPECT_TRUE(result.value.has_value()) << name;
    return result.value.value_or(AttributeValue());
  }

  ax::Error errorOf(ElementId id, const std::string& name) {
    const AttributeResult result = readAttribute(world_, application(), id, name, 0);
    EXPECT_FALSE(result.value.has_value()) << name;
    return result.error;
  }

  ax::Error write(ElementId id, const std::string& name, const AttributeValue& value) {
    return writeAttribute(world_, application(), id, name, value, 0);
  }

  World world_ = parseWorld(notes);
};

using testing_support::text;
AttributeValue link(ElementId id) { return ElementLink{id}; }
AttributeValue list(std::vector<ElementId> ids) { return ids; }

TEST_F(application_elements, the_application_element_leads_to_windows_focus_and_menu_bar) {
  EXPECT_EQ(read(0, "AXRole"), text("AXApplication"));
  EXPECT_EQ(read(0, "AXTitle"), text("Notes"));
  EXPECT_EQ(read(0, "AXWindows"), list({inbox, untitled}));
  EXPECT_EQ(read(0, "AXChildren"), list({inbox, untitled, menuBar}));
  EXPECT_EQ(read(0, "AXMenuBar"), link(menuBar));
  EXPECT_EQ(read(0, "AXFocusedWindow"), link(inbox));
  EXPECT_EQ(read(0, "AXMainWindow"), link(inbox));
  EXPECT_EQ(read(0, "AXFocusedUIElement"), link(body));
  EXPECT_EQ(read(0, "AXFrontmost"), AttributeValue(false));
  EXPECT_EQ(read(0, "AXHidden"), AttributeValue(false));
  EXPECT_EQ(read(0, "AXManualAccessibility"), AttributeValue(false));
  EXPECT_EQ(errorOf(0, "AXBanana"), ax::Error::attributeUnsupported);
}

TEST_F(application_elements, what_an_application_lacks_has_no_value) {
  application().name.reset();
  application().windows.clear();
  application().focusedWindow = application().focusedElement = 0;
  application().elements[menuBar - 1].removed = true;

  EXPECT_EQ(errorOf(0, "AXTitle"), ax::Error::noValue);
  EXPECT_EQ(errorOf(0, "AXFocusedWindow"), ax::Error::noValue);
  EXPECT_EQ(errorOf(0, "AXMainWindow"), ax::Error::noValue);
  EXPECT_EQ(errorOf(0, "AXFocusedUIElement"), ax::Error::noValue);
  EXPECT_EQ(errorOf(0, "AXMenuBar"), ax::Error::noValue);
  EXPECT_EQ(errorOf(0, "AXChildren"), ax::Error::noValue);
  EXPECT_EQ(read(0, "AXWindows"), list({}));
}

TEST_F(application_elements, an_element_has_its_place_in_the_tree_and_on_the_screen) {
  EXPECT_EQ(read(send, "AXRole"), text("AXButton"));
  EXPECT_EQ(read(send, "AXTitle"), text("Send"));
  EXPECT_EQ(read(send, "AXPosition"), AttributeValue(Point{120, 90}));
  EXPECT_EQ(read(send, "AXSize"), AttributeValue(Size{60, 20}));
  EXPECT_EQ(read(send, "AXParent"), link(bar));
  EXPECT_EQ(read(send, "AXWindow"), link(inbox));
  EXPECT_EQ(read(send, "AXTopLevelUIElement"), link(inbox));
  EXPECT_EQ(read(send, "AXEnabled"), AttributeValue(true));
  EXPECT_EQ(read(send, "AXFocused"), AttributeValue(false));
  EXPECT_EQ(read(body, "AXFocused"), AttributeValue(true));
  EXPECT_EQ(read(body, "AXSelectedTextRange"), AttributeValue(ax::Range{5, 0}));
  EXPECT_EQ(read(bar, "AXChildren"), list({send}));
}

TEST_F(application_elements, a_window_belongs_to_the_application_and_a_sheet_to_its_window) {
  EXPECT_EQ(read(inbox, "AXParent"), link(0));
  EXPECT_EQ(read(inbox, "AXTopLevelUIElement"), link(inbox));
  EXPECT_EQ(read(inbox, "AXFocused"), AttributeValue(true));
  EXPECT_EQ(read(inbox, "AXPosition"), AttributeValue(Point{100, 80}));
  EXPECT_EQ(errorOf(inbox, "AXWindow"), ax::Error::attributeUnsupported);
  EXPECT_EQ(errorOf(untitled, "AXTitle"), ax::Error::noValue);
  EXPECT_EQ(read(ok, "AXTopLevelUIElement"), link(sheet));
  EXPECT_EQ(read(ok, "AXWindow"), link(untitled));
  EXPECT_EQ(errorOf(fileMenu, "AXWindow"), ax::Error::noValue);
}

TEST_F(application_elements, reads_fail_as_the_platforms_do) {
  EXPECT_EQ(errorOf(send, "AXBanana"), ax::Error::attributeUnsupported);
  EXPECT_EQ(errorOf(send, "AXDescription"), ax::Error::noValue);
  EXPECT_EQ(errorOf(send, "AXChildren"), ax::Error::noValue);
  EXPECT_EQ(errorOf(send, "AXHelp"), ax::Error::cannotComplete);
  EXPECT_EQ(errorOf(volume, "AXPosition"), ax::Error::attributeUnsupported);
  EXPECT_EQ(errorOf(99, "AXRole"), ax::Error::invalidElement);
  EXPECT_EQ(errorOf(-1, "AXRole"), ax::Error::invalidElement);
  application().elements[send - 1].removed = true;
  EXPECT_EQ(errorOf(send, "AXRole"), ax::Error::invalidElement);
}

TEST_F(application_elements, what_the_text_says_of_an_attribute_hides_the_truth) {
  EXPECT_EQ(read(liar, "AXRole"), text("AXBanana"));
  EXPECT_EQ(read(liar, "AXChildren"), list({send}));
  EXPECT_EQ(read(liar, "AXEnabled"), AttributeValue(false));
  application().failing["AXWindows"] = ax::Error::failure;
  application().attributes["AXTitle"] = text("Mail");
  EXPECT_EQ(errorOf(0, "AXWindows"), ax::Error::failure);
  EXPECT_EQ(read(0, "AXTitle"), text("Mail"));
}

TEST_F(application_elements, a_write_changes_what_the_element_has) {
  EXPECT_EQ(write(body, "AXValue", text("né😀")), ax::Error::success);
  EXPECT_EQ(read(body, "AXValue"), text("né😀"));
  EXPECT_EQ(read(body, "AXSelectedTextRange"), AttributeValue(ax::Range{4, 0}));
  EXPECT_EQ(write(body, "AXSelectedTextRange", ax::Range{1, 2}), ax::Error::success);
  EXPECT_EQ(read(body, "AXSelectedTextRange"), AttributeValue(ax::Range{1, 2}));
  EXPECT_EQ(write(volume, "AXValue", 4.5), ax::Error::success);
  EXPECT_EQ(read(volume, "AXValue"), AttributeValue(4.5));
}

TEST_F(application_elements, a_write_of_another_kind_or_of_nothing_known_is_refused) {
  EXPECT_EQ(write(body, "AXValue", std::int64_t{1}), ax::Error::illegalArgument);
  EXPECT_EQ(write(volume, "AXValue", text("loud")), ax::Error::illegalArgument);
  EXPECT_EQ(write(send, "AXValue", text("x")), ax::Error::attributeUnsupported);
  EXPECT_EQ(write(99, "AXValue", text("x")), ax::Error::invalidElement);
  EXPECT_EQ(write(0, "AXTitle", text("x")), ax::Error::attributeUnsupported);
  EXPECT_EQ(read(body, "AXValue"), text("hello"));
}

TEST_F(application_elements, a_text_takes_and_loses_the_focus_by_a_write) {
  EXPECT_EQ(write(body, "AXFocused", false), ax::Error::success);
  EXPECT_EQ(errorOf(0, "AXFocusedUIElement"), ax::Error::noValue);
  EXPECT_EQ(write(body, "AXFocused", true), ax::Error::success);
  EXPECT_EQ(read(0, "AXFocusedUIElement"), link(body));
  EXPECT_EQ(write(body, "AXFocused", text("yes")), ax::Error::illegalArgument);
  EXPECT_EQ(write(send, "AXFocused", true), ax::Error::attributeUnsupported);
}

TEST_F(application_elements, actions_are_those_of_the_element) {
  EXPECT_EQ(actionNames(application(), send), std::vector<std::string>{"AXPress"});
  EXPECT_EQ(actionNames(application(), inbox), std::vector<std::string>{"AXRaise"});
  EXPECT_EQ(actionNames(application(), 0), std::vector<std::string>());
  EXPECT_EQ(actionNames(application(), 99), std::nullopt);
}

TEST(application_trees, made_on_demand_appear_a_while_after_the_second_enabling_write) {
  World world = parseWorld(notes);
  Application& browser = *findApplication(world, 40);
  const auto windowsAt = [&](Microseconds now) {
    return *readAttribute(world, browser, 0, "AXWindows", now).value;
  };

  EXPECT_EQ(writeAttribute(world, browser, 0, "AXManualAccessibility", true, 1'000),
            ax::Error::success);
  EXPECT_EQ(windowsAt(900'000), list({}));
  EXPECT_EQ(writeAttribute(world, browser, 0, "AXEnhancedUserInterface", true, 1'000'000),
            ax::Error::success);
  EXPECT_EQ(writeAttribute(world, browser, 0, "AXEnhancedUserInterface", true, 1'400'000),
            ax::Error::success);
  EXPECT_EQ(windowsAt(1'499'999), list({}));
  EXPECT_EQ(readAttribute(world, browser, 1, "AXChildren", 1'499'999).error, ax::Error::noValue);
  EXPECT_EQ(readAttribute(world, browser, 0, "AXFocusedWindow", 1'499'999).error,
            ax::Error::noValue);
  EXPECT_EQ(windowsAt(1'500'000), list({1}));
  EXPECT_EQ(*readAttribute(world, browser, 1, "AXChildren", 1'500'000).value, list({2}));
  EXPECT_EQ(writeAttribute(world, browser, 0, "AXManualAccessibility", false, 2'000'000),
            ax::Error::success);
  EXPECT_EQ(windowsAt(3'000'000), list({}));
}

TEST(application_trees, are_enabled_by_writes_that_are_said_to_be_rejected) {
  World world =
      parseWorld("app A pid 1 rejects-enabling tree after 0s\n  window 1 at 0,0 size 9x9");
  Application& application = world.applications[0];

  EXPECT_EQ(writeAttribute(world, application, 0, "AXManualAccessibility", true, 0),
            ax::Error::attributeUnsupported);
  EXPECT_EQ(writeAttribute(world, application, 0, "AXEnhancedUserInterface", true, 0),
            ax::Error::attributeUnsupported);
  EXPECT_EQ(*readAttribute(world, application, 0, "AXWindows", 0).value, list({1}));
  EXPECT_EQ(writeAttribute(world, application, 0, "AXManualAccessibility", std::int64_t{1}, 0),
            ax::Error::illegalArgument);
}

TEST(world_lookups, labels_come_from_the_first_attribute_with_a_character) {
  Element element;
  EXPECT_EQ(labelOf(element), "");
  element.attributes["AXHelp"] = text("help");
  EXPECT_EQ(labelOf(element), "help");
  element.attributes["AXPlaceholderValue"] = text("placeholder");
  EXPECT_EQ(labelOf(element), "placeholder");
  element.attributes["AXDescription"] = text("");
  EXPECT_EQ(labelOf(element), "placeholder");
  element.attributes["AXTitle"] = std::int64_t{3};
  EXPECT_EQ(labelOf(element), "placeholder");
  element.attributes["AXDescription"] = text("description");
  EXPECT_EQ(labelOf(element), "description");
}

TEST(world_lookups, find_only_what_is_there) {
  World world = parseWorld(notes);

  EXPECT_EQ(findApplication(world, 42), nullptr);
  EXPECT_EQ(findWindow(world, 99), nullptr);
  Application& application = *findApplication(world, 41);
  EXPECT_EQ(findLabelled(application, "Inbox"), nullptr);
  EXPECT_EQ(findLabelled(application, "Send")->id, send);
  EXPECT_EQ(findTitled(world, 41, "Inbox")->number, 7u);
  EXPECT_EQ(findTitled(world, 41, "Page"), nullptr);
  application.running = false;
  EXPECT_EQ(findApplication(world, 41), nullptr);
}

}  // namespace

}  // namespace simulator
