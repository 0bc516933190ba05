#include "simulator/world/reactions.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/attributes.h"
#include "simulator/world/element_text.h"
#include "simulator/world/presses.h"
#include "tests/support/attribute_values.h"

namespace simulator {

namespace {

using testing_support::text;

class reaction_effects : public testing::Test {
 protected:
  /// Presses a button with these reactions, in a window with these lines.
  std::string press(const std::string& reactions, const std::string& lines) {
    world_ = parseWorld(
        "app Notes pid 41\n"
        "  window 7 \"Inbox\" at 0,0 size 400x300\n"
        "    AXButton \"Go\" press: " +
        reactions + "\n" + lines +
        "\napp Browser pid 42\n"
        "  window 9 \"Page\" at 0,0 size 400x300\n"
        "    AXCheckBox \"Box\"\n"
        "    AXStaticText \"Address\" value \"none\"\n"
        "  window 10 \"Other page\" at 0,0 size 400x300 off-screen\n");
    return simulator::press(world_, notes(), 2);
  }

  Application& notes() { return world_.applications[0]; }
  Application& browser() { return world_.applications[1]; }
  AttributeValue value(const std::string& label) {
    return findLabelled(notes(), label)->attributes["AXValue"];
  }

  World world_;
};

constexpr const char* pressedGo = "pressed AXButton \"Go\"";

TEST_F(reaction_effects, a_text_may_be_the_value_that_an_element_holds) {
  press("append value of Draft to Log; set Draft \"\"; retitle value of Size",
        "    AXTextArea \"Draft\" value \"Hello\"\n    AXSlider \"Size\" value 2.5\n"
        "    AXStaticText \"Log\" value \"> \"");

  EXPECT_EQ(value("Log"), text("> Hello"));
  EXPECT_EQ(value("Draft"), text(""));
  EXPECT_EQ(findWindow(world_, 7)->title, "2.5");
}

TEST_F(reaction_effects, a_condition_looks_at_a_value) {
  const char* lines = "    AXCheckBox \"Sure\" value 1\n    AXStaticText \"Log\"";
  EXPECT_EQ(press("when Sure is 1 then set Log \"yes\"", lines), pressedGo);
  EXPECT_EQ(value("Log"), text("yes"));
  EXPECT_EQ(press("when Sure is not 1 then set Log \"yes\"; append \"!\" to Log", lines),
            pressedGo);
  EXPECT_EQ(value("Log"), text("!"));
  EXPECT_EQ(press("remove Sure; when Sure is 1 then set Log \"yes\"", lines),
            std::string(pressedGo) + ", finds nothing labelled \"Sure\"");
}

TEST_F(reaction_effects, one_in_another_application_is_about_what_is_there) {
  press(
      "in Browser set Address value of Link; in pid:42 toggle Box; in Browser show window \"Other "
      "page\"",
      "    AXStaticText \"Link\" value \"example.com\"");

  EXPECT_EQ(textOf(*findLabelled(browser(), "Address")), "example.com");
  EXPECT_EQ(findLabelled(browser(), "Box")->attributes["AXValue"], AttributeValue(std::int64_t{1}));
  EXPECT_TRUE(findWindow(world_, 10)->onScreen);
  EXPECT_EQ(press("in Browser hang; in Browser quit", ""),
            std::string(pressedGo) + ", finds that Browser hangs");
  EXPECT_EQ(press("in Browser quit; in Browser hang", ""),
            std::string(pressedGo) + ", finds no application Browser");
}

TEST_F(reaction_effects, elements_are_enabled_and_disabled) {
  const char* lines = "    AXButton \"Send\" disabled press: quit";
  press("enable Send", lines);
  EXPECT_EQ(simulator::readAttribute(world_, notes(), 3, "AXEnabled", 0).value,
            AttributeValue(true));
  press("enable Send; disable Send", lines);
  EXPECT_EQ(simulator::readAttribute(world_, notes(), 3, "AXEnabled", 0).value,
            AttributeValue(false));
}

TEST_F(reaction_effects, one_with_another_label_is_named_by_that) {
  press("relabel Play \"Pause\"; set Pause \"1\"; relabel \"By name\" value of Pause",
        "    AXButton \"Play\" help \"Plays\"\n    AXImage description \"By name\"");

  EXPECT_EQ(labelOf(notes().elements[2]), "Pause");
  EXPECT_EQ(notes().elements[2].attributes["AXHelp"], text("Plays"));
  EXPECT_EQ(notes().elements[3].attributes["AXDescription"], text("1"));
}

TEST_F(reaction_effects, numbers_are_counted_wherever_they_stand) {
  const auto counted = [&](const std::string& how, const std::string& held) {
    press("count Unread " + how, "    AXStaticText \"Unread\" " + held);
    return value("Unread");
  };
  EXPECT_EQ(counted("up", "value 3"), AttributeValue(std::int64_t{4}));
  EXPECT_EQ(counted("down by 5", "value 3"), AttributeValue(std::int64_t{0}));
  EXPECT_EQ(counted("up", "value \"9 unread of 20\""), text("10 unread of 20"));
  EXPECT_EQ(counted("down", "value \"Inbox (1)\""), text("Inbox (0)"));
  EXPECT_EQ(counted("up by 2", "value \"Messages: \""), text("Messages: 2"));
  EXPECT_EQ(counted("up", ""), text("1"));
  EXPECT_EQ(counted("up", "value \"999999999999999999999\""), text("1"));
}

TEST_F(reaction_effects, windows_are_closed_by_their_titles) {
  EXPECT_EQ(
      press("in Browser close window \"Other page\"; in Browser close window \"Other page\"", ""),
      std::string(pressedGo) + ", finds no window titled \"Other page\"");
  EXPECT_EQ(findWindow(world_, 10), nullptr);
  EXPECT_NE(findWindow(world_, 9), nullptr);
}

}  // namespace

}  // namespace simulator
