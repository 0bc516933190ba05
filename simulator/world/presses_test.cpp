#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/element_text.h"
#include "simulator/world/presses.h"
#include "tests/support/attribute_values.h"

namespace simulator {

namespace {

class clicks : public testing::Test {
 protected:
  /// A world whose application Notes has these lines in its window 7, at 0,0 and 400 by 300.
  void build(const std::string& lines) {
    world_ = parseWorld(
        "app Other pid 40 frontmost\n"
        "  window 3 \"Front\" at 0,0 size 50x50\n"
        "app Notes pid 41\n"
        "  window 7 \"Inbox\" at 0,0 size 400x300\n" +
        lines + "\n  window 8 \"Second\" at 500,0 size 100x100 off-screen\n");
  }

  Application& notes() { return world_.applications[1]; }
  std::string click(Point point, bool right = false) {
    return simulator::click(world_, 41, 7, point, right);
  }
  AttributeValue value(const std::string& label) {
    return findLabelled(notes(), label)->attributes["AXValue"];
  }
  std::vector<WindowNumber> numbers() const {
    std::vector<WindowNumber> result;
    for (const Window& window : world_.windows) result.push_back(window.number);
    return result;
  }

  World world_;
};

using testing_support::text;

TEST_F(clicks, a_button_runs_its_reactions_in_order) {
  build(R"(
    AXButton "Send" at 10,10 size 50x20 press: append "sent" to Body; set Log "a"; append "é" to Log
    AXTextArea "Body" value "hello "
    AXStaticText "Log")");

  EXPECT_EQ(click({10, 10}), "pressed AXButton \"Send\"");

  EXPECT_EQ(value("Body"), text("hello sent"));
  EXPECT_EQ(findLabelled(notes(), "Body")->attributes["AXSelectedTextRange"],
            AttributeValue(ax::Range{10, 0}));
  EXPECT_EQ(value("Log"), text("aé"));
  EXPECT_EQ(findLabelled(notes(), "Log")->attributes.count("AXSelectedTextRange"), 0u);
}

TEST_F(clicks, the_later_sibling_and_the_inner_element_are_on_top) {
  build(R"(
    AXGroup "Under" at 0,0 size 100x100
        AXButton "In under" at 0,0 size 50x50
    AXGroup "Over" at 20,20 size 60x60)");
  const Window& window = *findWindow(world_, 7);

  EXPECT_EQ(elementAt(notes(), window, {10, 10}), 3);
  EXPECT_EQ(elementAt(notes(), window, {30, 30}), 4);
  EXPECT_EQ(elementAt(notes(), window, {90, 10}), 2);
  EXPECT_EQ(elementAt(notes(), window, {200, 200}), 1);
  EXPECT_EQ(elementAt(notes(), window, {400, 10}), 0);
}

TEST_F(clicks, elements_without_a_sensible_frame_are_never_hit) {
  build(R"(
    AXButton "A"
    AXButton "B" at nan,0 size 50x50
    AXButton "C" at 0,0 size -5x50)");

  EXPECT_EQ(elementAt(notes(), *findWindow(world_, 7), {10, 10}), 1);
}

TEST_F(clicks, what_is_in_a_button_belongs_to_the_button) {
  build(R"(
    AXButton "Send" at 10,10 size 50x20 press: set Log "yes"
        AXStaticText value "Send" at 12,12 size 40x16
    AXStaticText "Log")");

  EXPECT_EQ(click({20, 20}), "pressed AXButton \"Send\"");
  EXPECT_EQ(value("Log"), text("yes"));
}

TEST_F(clicks, a_disabled_button_does_nothing) {
  build(R"(
    AXButton "Send" disabled at 10,10 size 50x20 press: set Log "yes"
    AXStaticText "Log" value "no")");

  EXPECT_EQ(click({20, 20}), "clicked AXButton \"Send\", which is disabled");
  EXPECT_EQ(value("Log"), text("no"));
}

TEST_F(clicks, the_right_button_has_its_own_reactions) {
  build(R"(
    AXRow "A" at 0,0 size 50x20 press: set Log "left" right: set Log "right"
    AXTextArea "Body" at 0,20 size 50x20
    AXStaticText "Log")");

  EXPECT_EQ(click({5, 5}, true), "right-clicked AXRow \"A\"");
  EXPECT_EQ(value("Log"), text("right"));
  EXPECT_EQ(click({5, 25}, true), "right-clicked AXTextArea \"Body\", which does nothing");
  EXPECT_EQ(notes().focusedElement, 0);
}

TEST_F(clicks, the_second_of_two_has_its_own_reactions) {
  build(R"(
    AXGroup "Around" at 0,0 size 90x60 press: append "a" to Log
        AXRow "A" at 0,0 size 50x20 press: append "p" to Log double: append "d" to Log
        AXRow "B" at 0,20 size 50x20 press: append "p" to Log
        AXRow "C" at 0,40 size 50x20 double: append "d" to Log
    AXStaticText "Log")");
  const auto twice = [&](Point point) {
    simulator::click(world_, 41, 7, point, false, 1);
    return simulator::click(world_, 41, 7, point, false, 2);
  };

  EXPECT_EQ(twice({5, 5}), "double-clicked AXRow \"A\"");
  EXPECT_EQ(value("Log"), text("pd"));
  EXPECT_EQ(twice({5, 25}), "pressed AXRow \"B\"");
  EXPECT_EQ(value("Log"), text("pdpp"));
  EXPECT_EQ(twice({5, 45}), "double-clicked AXRow \"C\"");
  EXPECT_EQ(value("Log"), text("pdppad"));
}

TEST_F(clicks, a_text_takes_the_focus_with_its_caret_at_the_end) {
  build("    AXTextArea \"Body\" at 0,20 size 50x20 value \"a😀\" selection 0+1");

  EXPECT_EQ(click({5, 25}), "focused AXTextArea \"Body\"");
  EXPECT_EQ(notes().focusedElement, 2);
  EXPECT_EQ(notes().elements[1].attributes["AXSelectedTextRange"], AttributeValue(ax::Range{3, 0}));
}

TEST_F(clicks, a_check_box_toggles) {
  build("    AXCheckBox \"C\" at 0,0 size 9x9\n    AXCheckBox \"B\" at 9,0 size 9x9 value false");

  click({1, 1});
  EXPECT_EQ(value("C"), AttributeValue(std::int64_t{1}));
  click({1, 1});
  EXPECT_EQ(value("C"), AttributeValue(std::int64_t{0}));
  click({10, 1});
  EXPECT_EQ(value("B"), AttributeValue(true));
}

TEST_F(clicks, a_clicked_window_takes_the_applications_focus_and_stays_where_it_is) {
  build("    AXGroup \"G\" at 0,0 size 9x9");
  notes().focusedWindow = 3;
  notes().focusedElement = 3;

  EXPECT_EQ(click({1, 1}), "clicked AXGroup \"G\", which does nothing");
  EXPECT_EQ(click({100, 100}), "clicked AXWindow \"Inbox\", which does nothing");

  EXPECT_EQ(notes().focusedWindow, 1);
  EXPECT_EQ(notes().focusedElement, 0);
  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{3, 7, 8}));
  EXPECT_EQ(world_.frontmost, 40);
}

TEST_F(clicks, a_sheet_is_a_window_in_front_of_its_own_that_its_button_closes) {
  build("    AXButton \"New\" at 0,0 size 9x9 press: open sheet \"Sure?\"");

  click({1, 1});

  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{3, 9, 7, 8}));
  const Window sheet = *findWindow(world_, 9);
  EXPECT_EQ(sheet.owner, 41);
  EXPECT_EQ(sheet.sheetOf, 7u);
  EXPECT_EQ(sheet.title, std::nullopt);
  EXPECT_EQ(sheet.frame, (Rect{40, 28, 320, 132}));
  EXPECT_EQ(notes().elements[static_cast<std::size_t>(sheet.element) - 1].role, "AXSheet");
  EXPECT_EQ(notes().elements[0].children, (std::vector<ElementId>{2, 4}));
  EXPECT_EQ(notes().windows, (std::vector<ElementId>{1, 3}));
  EXPECT_EQ(notes().focusedWindow, 4);
  EXPECT_EQ(textOf(notes().elements[4]), "Sure?");
  EXPECT_EQ(click({1, 1}), "clicked a window behind its sheet 9");

  const Rect button = *findLabelled(notes(), "OK")->frame;
  EXPECT_EQ(simulator::click(world_, 41, 9, {button.x, button.y}, false),
            "pressed AXButton \"OK\"");

  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{3, 7, 8}));
  EXPECT_EQ(notes().elements[0].children, (std::vector<ElementId>{2}));
  EXPECT_EQ(notes().focusedWindow, 1);
  EXPECT_EQ(findElement(notes(), 4), nullptr);
  EXPECT_EQ(findElement(notes(), 6), nullptr);

  click({1, 1});
  EXPECT_NE(findWindow(world_, 10), nullptr);
}

TEST_F(clicks, a_menus_item_is_about_the_window_that_has_the_focus) {
  const auto pressed = [&](const std::string& reaction) {
    world_ = parseWorld(
        "app Other pid 40 frontmost\n"
        "  window 3 \"Front\" at 0,0 size 50x50\n"
        "app Notes pid 41\n"
        "  menu File > \"Item\" press: " +
        reaction +
        "\n  window 7 \"Inbox\" at 0,0 size 400x300\n"
        "  window 8 \"Second\" at 500,0 size 100x100 focused\n");
    press(world_, notes(), findLabelled(notes(), "Item")->id);
    return numbers();
  };
  const auto all = pressed("retitle \"X\"");
  EXPECT_EQ(findWindow(world_, 8)->title, "X");
  EXPECT_EQ(findWindow(world_, 7)->title, "Inbox");

  pressed("open sheet \"Save?\"");
  EXPECT_EQ(findWindow(world_, 9)->sheetOf, 8U);

  auto rest = all;
  std::erase(rest, 8U);
  EXPECT_EQ(pressed("close window"), rest);
  EXPECT_EQ(pressed("close window; close window; close window"), std::vector<WindowNumber>{3});
}

TEST_F(clicks, a_closed_window_takes_its_sheets_and_elements_with_it) {
  build(
      "    AXButton \"X\" at 0,0 size 9x9 press: open sheet \"S\"; close window; set Log \"z\"\n"
      "  window 9 \"Log window\" at 0,0 size 5x5\n"
      "    AXStaticText \"Log\"");

  click({1, 1});

  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{3, 9, 8}));
  EXPECT_EQ(notes().windows, (std::vector<ElementId>{3, 5}));
  EXPECT_EQ(notes().focusedWindow, 3);
  EXPECT_EQ(findElement(notes(), 1), nullptr);
  EXPECT_EQ(findElement(notes(), 2), nullptr);
  EXPECT_EQ(value("Log"), text("z"));
}

TEST_F(clicks, a_shown_window_comes_in_front_of_the_applications_others) {
  build("    AXButton \"S\" at 0,0 size 9x9 press: show window \"Second\"");

  click({1, 1});

  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{3, 8, 7}));
  EXPECT_TRUE(findWindow(world_, 8)->onScreen);
  EXPECT_EQ(notes().focusedWindow, 3);
}

TEST_F(clicks, a_retitled_window_shows_it_to_everyone) {
  build("    AXButton \"R\" at 0,0 size 9x9 press: retitle \"Outbox\"");

  click({1, 1});

  EXPECT_EQ(findWindow(world_, 7)->title, "Outbox");
  EXPECT_EQ(notes().elements[0].attributes["AXTitle"], text("Outbox"));
}

TEST_F(clicks, an_application_can_quit_or_hang_by_a_click) {
  build(R"(
    AXButton "H" at 0,0 size 9x9 press: hang
    AXButton "Q" at 10,0 size 9x9 press: quit; set Log "never"
    AXStaticText "Log")");
  World quitting = world_;

  click({1, 1});
  EXPECT_TRUE(notes().hangs);
  EXPECT_EQ(click({11, 1}), "clicked an application that hangs");
  EXPECT_TRUE(notes().running);

  simulator::click(quitting, 41, 7, {11, 1}, false);
  EXPECT_EQ(findApplication(quitting, 41), nullptr);
  EXPECT_EQ(quitting.windows.size(), 1u);
  EXPECT_EQ(quitting.applications[1].elements[3].attributes.count("AXValue"), 0u);
  EXPECT_EQ(simulator::click(quitting, 41, 7, {1, 1}, false), "clicked a window that is gone");
}

TEST_F(clicks, a_window_of_another_application_is_not_clicked) {
  build("");

  EXPECT_EQ(simulator::click(world_, 41, 3, {1, 1}, false), "clicked a window that is gone");
}

TEST(element_text, lengths_are_in_utf16_units_and_characters) {
  EXPECT_EQ(utf16Length(""), 0);
  EXPECT_EQ(utf16Length("aé€😀"), 5);
  EXPECT_EQ(characterCount("aé€😀"), 4u);
}

}  // namespace

}  // namespace simulator
