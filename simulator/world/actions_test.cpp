#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/actions.h"
#include "simulator/world/attributes.h"
#include "simulator/world/presses.h"
#include "tests/support/attribute_values.h"

namespace simulator {

namespace {

class actions : public testing::Test {
 protected:
  /// A world whose application Notes, in the background, has these lines below it.
  void build(const std::string& lines) {
    world_ = parseWorld("app Other pid 40 frontmost\n  window 3 \"Front\" at 0,0 size 900x900\n" +
                        ("app Notes pid 41\n" + lines));
  }

  Application& notes() { return world_.applications[1]; }
  ElementId idOf(const std::string& label) { return findLabelled(notes(), label)->id; }

  /// The error's code and what the journal would say.
  std::string perform(ElementId id, const std::string& action) {
    const Performed done = simulator::perform(world_, 41, id, action);
    return std::to_string(static_cast<int>(done.error)) + " " + done.outcome;
  }
  std::string perform(const std::string& label, const std::string& action) {
    return perform(idOf(label), action);
  }

  AttributeResult read(ElementId id, const std::string& name) {
    return readAttribute(world_, notes(), id, name, 0);
  }
  AttributeValue value(const std::string& label) { return *read(idOf(label), "AXValue").value; }
  std::vector<ElementId> children(ElementId id) {
    const auto result = read(id, "AXChildren");
    return result.value ? std::get<std::vector<ElementId>>(*result.value)
                        : std::vector<ElementId>();
  }

  World world_;
};

using testing_support::text;
AttributeValue integer(std::int64_t value) { return value; }

TEST_F(actions, a_press_runs_the_reactions_of_the_element_itself) {
  build(R"(
    window 7 "Inbox" at 0,0 size 400x300
        AXButton "Send" press: append "sent" to Body; set Log "done"
            AXButton "Inner"
        AXTextArea "Body" value "hello "
        AXStaticText "Log")");

  EXPECT_EQ(perform("Send", "AXPress"), "0 pressed AXButton \"Send\"");
  EXPECT_EQ(perform("Inner", "AXPress"), "0 pressed AXButton \"Inner\", which does nothing");

  EXPECT_EQ(value("Body"), text("hello sent"));
  EXPECT_EQ(value("Log"), text("done"));
  EXPECT_EQ(world_.frontmost, 40);
  EXPECT_EQ(notes().focusedElement, 0);
}

TEST_F(actions, a_press_changes_check_boxes_switches_and_radio_buttons) {
  build(R"(
    window 7 "Inbox" at 0,0 size 400x300
        AXCheckBox "Box"
        AXSwitch "Switch" value true
        AXRadioButton "Left" value 1
        AXRadioButton "Right")");

  for (const char* label : {"Box", "Switch", "Right"}) perform(label, "AXPress");

  EXPECT_EQ(value("Box"), integer(1));
  EXPECT_EQ(value("Switch"), AttributeValue(false));
  EXPECT_EQ(value("Left"), integer(0));
  EXPECT_EQ(value("Right"), integer(1));
}

TEST_F(actions, what_an_element_lacks_or_cannot_do_is_an_error) {
  build(R"(
    window 7 "Inbox" at 0,0 size 400x300
        AXButton "Off" disabled press: set Log "never"
        AXStaticText "Log" value "-"
        AXButton "Odd" actions AXFoo)");

  EXPECT_EQ(perform("Off", "AXPress"), "-25204 AXButton \"Off\" is disabled");
  EXPECT_EQ(perform("Off", "AXShowMenu"), "-25206 AXButton \"Off\" has no AXShowMenu");
  EXPECT_EQ(perform("Log", "AXPress"), "-25206 AXStaticText \"Log\" has no AXPress");
  EXPECT_EQ(perform("Odd", "AXFoo"), "0 performed AXFoo of AXButton \"Odd\", which does nothing");
  EXPECT_EQ(perform(0, "AXPress"), "-25206 the application has no AXPress");
  EXPECT_EQ(perform(99, "AXPress"), "-25202 asked an element that is gone");
  EXPECT_EQ(value("Log"), text("-"));
}

TEST_F(actions, an_action_can_run_and_answer_an_error) {
  build(R"(
    window 7 "Inbox" at 0,0 size 400x300
        AXButton "Save" replying -25204 press: open sheet "Saved")");

  EXPECT_EQ(perform("Save", "AXPress"), "-25204 pressed AXButton \"Save\", answered with -25204");

  EXPECT_EQ(world_.windows.size(), 3u);
}

TEST_F(actions, a_sheets_button_answers_it) {
  build(R"(
    window 7 "Inbox" at 0,0 size 400x300
        AXTextField "Name" value "old"
    window 8 "Rename" at 50,30 size 200x100 sheet of 7 closed
        AXButton "Keep" press: close window
    window 9 "Tools" at 0,0 size 10x10
        AXButton "Rename…" press: show window "Rename")");
  const ElementId window = world_.windows[2].element;

  EXPECT_EQ(children(window), std::vector<ElementId>{idOf("Name")});
  perform("Rename…", "AXPress");
  const ElementId sheet = findTitled(world_, 41, "Rename")->element;
  EXPECT_EQ(children(window), (std::vector<ElementId>{idOf("Name"), sheet}));
  EXPECT_EQ(*read(sheet, "AXRole").value, text("AXSheet"));
  EXPECT_EQ(*read(sheet, "AXParent").value, AttributeValue(ElementLink{window}));
  EXPECT_TRUE(findWindow(world_, 8)->onScreen);
  EXPECT_EQ(click(world_, 41, 7, {5, 5}, false), "clicked a window behind its sheet 8");
  perform("Keep", "AXPress");
  EXPECT_EQ(findWindow(world_, 8), nullptr);
  EXPECT_EQ(children(window), std::vector<ElementId>{idOf("Name")});
}

TEST_F(actions, a_slider_goes_by_steps_within_its_limits) {
  build(R"(
    window 7 "Sound" at 0,0 size 400x300
        AXSlider "Volume" range 0..10 step 4 value 5
        AXSlider "Balance" range -1..1
        AXSlider "Plain" value 3
        AXSlider "Twisted" range 5..1 value 3)");

  EXPECT_EQ(perform("Volume", "AXIncrement"), "0 moved AXSlider \"Volume\" from 5 to 9");
  EXPECT_EQ(perform("Volume", "AXIncrement"), "0 moved AXSlider \"Volume\" from 9 to 10");
  EXPECT_EQ(value("Volume"), integer(10));
  EXPECT_EQ(perform("Balance", "AXDecrement"), "0 moved AXSlider \"Balance\" from -1 to -1");
  EXPECT_EQ(perform("Balance", "AXIncrement"), "0 moved AXSlider \"Balance\" from -1 to -0.8");
  EXPECT_EQ(value("Balance"), AttributeValue(-0.8));
  EXPECT_EQ(perform("Plain", "AXDecrement"), "0 moved AXSlider \"Plain\" from 3 to 2.9");
  EXPECT_EQ(perform("Twisted", "AXIncrement"), "0 moved AXSlider \"Twisted\" from 3 to 2.6");
  EXPECT_EQ(perform("Volume", "AXPress"), "-25206 AXSlider \"Volume\" has no AXPress");
}

TEST_F(actions, a_pop_up_button_shows_its_menu_and_then_the_choice) {
  build(R"(
    window 7 "Set" at 0,0 size 400x300
        AXPopUpButton "Size" at 10,10 size 100x20 choices "Small" "Large")");
  const ElementId size = idOf("Size");
  const ElementId menu = size + 1;

  EXPECT_EQ(value("Size"), text("Small"));
  EXPECT_EQ(children(size), std::vector<ElementId>());
  EXPECT_EQ(read(menu, "AXRole").error, ax::Error::invalidElement);
  EXPECT_EQ(perform(menu + 2, "AXPress"), "-25202 asked an element that is gone");

  EXPECT_EQ(perform(size, "AXPress"), "0 pressed AXPopUpButton \"Size\"");
  EXPECT_EQ(children(size), std::vector<ElementId>{menu});
  EXPECT_EQ(children(menu), (std::vector<ElementId>{menu + 1, menu + 2}));
  EXPECT_EQ(perform(menu + 2, "AXPress"), "0 pressed AXMenuItem \"Large\"");
  EXPECT_EQ(value("Size"), text("Large"));
  EXPECT_EQ(children(size), std::vector<ElementId>());
}

TEST_F(actions, menus_close_by_the_button_by_cancelling_and_by_a_click_beside) {
  build(R"(
    window 7 "Set" at 0,0 size 400x300
        AXPopUpButton "Size" at 10,10 size 100x20 choices "Small" "Large"
        AXButton "Other" at 10,200 size 100x20 press: set Log "pressed"
        AXStaticText "Log" value "-"
        AXGroup "Row" at 10,240 size 100x20 actions AXShowMenu
            AXMenu at 20,250 size 80x22 closed
                AXMenuItem "Copy" at 20,250 size 80x22)");
  const ElementId menu = idOf("Size") + 1;

  perform("Size", "AXShowMenu");
  EXPECT_EQ(notes().openMenu, menu);
  perform("Size", "AXPress");
  EXPECT_EQ(notes().openMenu, 0);
  perform("Size", "AXPress");
  EXPECT_EQ(perform(menu, "AXCancel"), "0 closed AXMenu");
  EXPECT_EQ(notes().openMenu, 0);
  EXPECT_EQ(perform("Row", "AXShowMenu"), "0 showed the menu of AXGroup \"Row\"");
  EXPECT_EQ(click(world_, 41, 7, {20, 210}, false), "closed a menu");
  EXPECT_EQ(value("Log"), text("-"));
  EXPECT_EQ(click(world_, 41, 7, {20, 210}, false), "pressed AXButton \"Other\"");
}

TEST_F(actions, a_click_takes_the_item_of_an_open_menu_not_what_lies_below) {
  build(R"(
    window 7 "Set" at 0,0 size 400x300
        AXPopUpButton "Size" at 10,10 size 100x20 choices "Small" "Large"
        AXButton "Below" at 10,30 size 100x60)");

  EXPECT_EQ(click(world_, 41, 7, {20, 60}, false),
            "clicked AXButton \"Below\", which does nothing");
  EXPECT_EQ(click(world_, 41, 7, {20, 20}, false), "pressed AXPopUpButton \"Size\"");
  EXPECT_EQ(click(world_, 41, 7, {20, 60}, false), "pressed AXMenuItem \"Large\"");
  EXPECT_EQ(value("Size"), text("Large"));
}

TEST_F(actions, an_item_of_the_menu_bar_can_be_pressed_while_its_menu_is_closed) {
  build(R"(
    menu File > Export > PDF press: set Log "exported"
    window 7 "Doc" at 0,0 size 400x300
        AXStaticText "Log" value "-")");

  EXPECT_EQ(perform("PDF", "AXPress"), "0 pressed AXMenuItem \"PDF\"");
  EXPECT_EQ(value("Log"), text("exported"));
  EXPECT_EQ(perform("File", "AXPress"), "0 pressed AXMenuBarItem \"File\"");
  EXPECT_EQ(notes().openMenu, idOf("File") + 1);
}

TEST_F(actions, a_window_is_raised_among_its_applications_own_with_its_sheet) {
  build(R"(
    window 7 "One" at 0,0 size 100x100
    window 8 "Two" at 0,0 size 100x100
    window 9 "Sheet" at 0,0 size 50x50 sheet of 8)");

  EXPECT_EQ(perform(findWindow(world_, 8)->element, "AXRaise"), "0 raised AXWindow \"Two\"");

  std::vector<WindowNumber> order;
  for (const Window& window : world_.windows) order.push_back(window.number);
  EXPECT_EQ(order, (std::vector<WindowNumber>{3, 9, 8, 7}));
}

TEST_F(actions, a_press_may_remove_what_it_stands_in) {
  build(R"(
    window 7 "One" at 0,0 size 100x100
        AXPopover "Tip" at 0,0 size 50x50
            AXButton "Close" press: remove Tip)");
  const ElementId close = idOf("Close");

  perform(close, "AXPress");

  EXPECT_EQ(children(findWindow(world_, 7)->element), std::vector<ElementId>());
  EXPECT_EQ(perform(close, "AXPress"), "-25202 asked an element that is gone");
}

TEST(hidden_applications, come_back_with_the_windows_they_took_along) {
  World world = parseWorld(R"(
    app Notes pid 41 hidden
        window 7 "One" at 0,0 size 100x100
        window 8 "Small" at 0,0 size 100x100 minimized
        window 9 "Never" at 0,0 size 100x100 off-screen)");
  const auto onScreen = [&] {
    std::vector<WindowNumber> numbers;
    for (const Window& window : world.windows) {
      if (window.onScreen) numbers.push_back(window.number);
    }
    return numbers;
  };
  Application& notes = world.applications[0];

  EXPECT_EQ(onScreen(), std::vector<WindowNumber>());
  EXPECT_TRUE(unhide(world, 41));
  EXPECT_FALSE(notes.hidden);
  EXPECT_EQ(onScreen(), std::vector<WindowNumber>{7});
  EXPECT_TRUE(unhide(world, 41));
  EXPECT_FALSE(unhide(world, 42));
  EXPECT_EQ(writeAttribute(world, notes, 0, "AXHidden", true, 0), ax::Error::success);
  EXPECT_EQ(onScreen(), std::vector<WindowNumber>());
  EXPECT_EQ(writeAttribute(world, notes, 0, "AXHidden", false, 0), ax::Error::success);
  EXPECT_EQ(onScreen(), std::vector<WindowNumber>{7});
}

TEST(minimized_windows, come_on_screen_in_front_of_their_applications_others) {
  World world = parseWorld(R"(
    app Other pid 40 frontmost
        window 3 "Front" at 0,0 size 9x9
    app Notes pid 41
        window 7 "One" at 0,0 size 100x100
        window 8 "Small" at 0,0 size 100x100 minimized)");
  Application& notes = world.applications[1];
  const auto minimized = [&](ElementId id) {
    return *readAttribute(world, notes, id, "AXMinimized", 0).value;
  };

  EXPECT_EQ(minimized(1), AttributeValue(false));
  EXPECT_EQ(minimized(2), AttributeValue(true));
  EXPECT_FALSE(findWindow(world, 8)->onScreen);
  EXPECT_EQ(writeAttribute(world, notes, 2, "AXMinimized", false, 0), ax::Error::success);
  EXPECT_EQ(minimized(2), AttributeValue(false));
  EXPECT_TRUE(findWindow(world, 8)->onScreen);
  EXPECT_EQ(world.windows[1].number, 8u);
  EXPECT_EQ(world.frontmost, 40);
  EXPECT_EQ(writeAttribute(world, notes, 2, "AXMinimized", text("no"), 0),
            ax::Error::illegalArgument);
}

TEST(elements_at_points, are_those_of_the_applications_frontmost_window_there) {
  World world = parseWorld(R"(
    app Other pid 40 frontmost
        window 3 "Front" at 0,0 size 500x500
    app Notes pid 41
        menu File > Open
        window 7 "Upper" at 0,0 size 100x100
            AXButton "Send" at 10,30 size 50x20
        window 8 "Lower" at 50,50 size 100x100
            AXButton "Below" at 60,60 size 80x80
        window 9 "Away" at 300,300 size 100x100 off-screen
    app Late pid 42 tree after 100ms
        window 4 "Page" at 0,0 size 100x100)");
  const auto at = [&](std::size_t application, Point point) {
    return elementAtPoint(world, world.applications[application], point, 0);
  };
  const Application& notes = world.applications[1];
  const ElementId upper = findWindow(world, 7)->element;

  EXPECT_EQ(at(1, {20, 40}), upper + 1);
  EXPECT_EQ(at(1, {70, 70}), upper);
  EXPECT_EQ(at(1, {120, 120}), findLabelled(world.applications[1], "Below")->id);
  EXPECT_EQ(at(1, {310, 310}), 0);
  EXPECT_EQ(at(1, {15, 5}), upper);
  EXPECT_EQ(at(2, {10, 10}), 0);
  world.frontmost = 41;
  EXPECT_EQ(findElement(notes, at(1, {15, 5}))->role, "AXMenuBarItem");
}

}  // namespace

}  // namespace simulator
