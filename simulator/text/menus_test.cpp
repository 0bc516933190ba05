#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/elements.h"
#include "tests/support/world_errors.h"

namespace simulator {

namespace {

/// The tree below an element, one line each: indentation, role, title, frame, key equivalent.
void tell(const Application& application, ElementId id, std::size_t depth, std::string& told) {
  const Element& element = *findElement(application, id);
  told += std::string(depth * 2, ' ') + element.role.substr(2);
  const auto attribute = [&](const char* name) {
    const auto found = element.attributes.find(name);
    return found == element.attributes.end() ? AttributeValue(Opaque{}) : found->second;
  };
  const auto title = attribute("AXTitle");
  const auto character = attribute("AXMenuItemCmdChar");
  if (const auto* text = std::get_if<std::string>(&title)) told += " \"" + *text + '"';
  if (element.frame) {
    const auto whole = [](double value) { return std::to_string(static_cast<int>(value)); };
    told += " " + whole(element.frame->x) + "," + whole(element.frame->y) + " " +
            whole(element.frame->width) + "x" + whole(element.frame->height);
  }
  if (const auto* text = std::get_if<std::string>(&character)) {
    told +=
        " " + *text + std::to_string(std::get<std::int64_t>(attribute("AXMenuItemCmdModifiers")));
  }
  if (!isEnabled(element)) told += " disabled";
  told += "\n";
  for (const ElementId child : element.children) tell(application, child, depth + 1, told);
}

std::string told(const World& world, ElementId id) {
  std::string text;
  tell(world.applications[0], id, 0, text);
  return text;
}

using testing_support::errorOf;

/// What is wrong with a line of an application.
std::string errorOfLine(const std::string& line) { return errorOf("app A pid 1\n  " + line); }

TEST(world_text_menus, stand_in_the_menu_bar_closed_and_far_off_screen) {
  const World world = parseWorld(R"(
    app Notes pid 41
        menu File > "Save As…" cmd shift s
        menu File > "Save As Copy…" cmd option shift s alternate
        menu File > -
        menu File > Export > "As PDF" option delete press: quit
        menu File > Close disabled
        menu Edit > Undo cmd z
    display 1 800x600 at 10,20)");

  EXPECT_EQ(told(world, 1),
            "MenuBar 10,20 800x24\n"
            "  MenuBarItem \"File\" 10,0 52x24\n"
            "    Menu 0,30000 220x88\n"
            "      MenuItem \"Save As…\" 0,30000 220x22 S1\n"
            "      MenuItem \"Save As Copy…\" 0,30022 0x22 S3\n"
            "      MenuItem \"\" 0,30022 220x22 disabled\n"
            "      MenuItem \"Export\" 0,30044 220x22\n"
            "        Menu 0,30000 220x22\n"
            "          MenuItem \"As PDF\" 0,30000 220x22 \b10\n"
            "      MenuItem \"Close\" 0,30066 220x22 disabled\n"
            "  MenuBarItem \"Edit\" 62,0 52x24\n"
            "    Menu 0,30000 220x22\n"
            "      MenuItem \"Undo\" 0,30000 220x22 Z0\n");
}

TEST(world_text_menus, join_a_menu_bar_that_is_written_out) {
  const World world = parseWorld(R"(
    app Notes pid 41
        AXMenuBar
            AXMenuBarItem "File"
                AXMenu
                    AXMenuItem "Open"
        menu File > Close)");

  EXPECT_EQ(told(world, 1),
            "MenuBar\n"
            "  MenuBarItem \"File\"\n"
            "    Menu 0,0 0x22\n"
            "      MenuItem \"Open\"\n"
            "      MenuItem \"Close\" 0,0 0x22\n");
}

TEST(world_text_menus, items_of_a_pop_up_button_lie_below_it) {
  const World world = parseWorld(R"(
    app Notes pid 41
        window 7 at 0,0 size 400x300
            AXPopUpButton "Size" at 10,20 size 100x24 choices "Small" "Large" value "Large")");

  EXPECT_EQ(told(world, 2),
            "PopUpButton \"Size\" 10,20 100x24\n"
            "  Menu 10,44 100x44\n"
            "    MenuItem \"Small\" 10,44 100x22\n"
            "    MenuItem \"Large\" 10,66 100x22\n");
  EXPECT_EQ(world.applications[0].elements[1].attributes.at("AXValue"),
            AttributeValue(std::string("Large")));
}

TEST(world_text_menus, of_a_button_are_closed_unless_told) {
  const World world = parseWorld(R"(
    app Notes pid 41
        window 7 at 0,0 size 400x300
            AXMenuButton "More"
                AXMenu open
            AXMenu)");
  const Application& notes = world.applications[0];

  EXPECT_EQ(notes.openMenu, 3);
  EXPECT_EQ(notes.elements[2].presence, Presence::whileOpen);
  EXPECT_EQ(notes.elements[3].presence, Presence::always);
}

TEST(world_text_menus, say_what_is_wrong_with_their_lines) {
  const std::string words = "cmd, shift, option, control, disabled, alternate, press:";
  EXPECT_EQ(errorOfLine("menu"), "line 2: 'menu' needs titles with > between them");
  EXPECT_EQ(errorOfLine("menu File >"), "line 2: 'menu' needs titles with > between them");
  EXPECT_EQ(errorOfLine("menu File Open"), "line 2: unknown word 'Open'; expected " + words);
  EXPECT_EQ(errorOfLine("menu File > Open cmd"),
            "line 2: 'cmd, shift, option or control' needs one character, or return, tab, space, "
            "delete or escape");
  EXPECT_EQ(errorOfLine("menu File > Open cmd F12"),
            "line 2: unknown key 'F12'; expected one character, or return, tab, space, delete or "
            "escape");
  EXPECT_EQ(errorOfLine("menu File > Open cmd o shift o"),
            "line 2: a menu's item has one key equivalent");
  EXPECT_EQ(errorOfLine("menu File > Open press: set Log \"x\""),
            "line 2: no element of A is labelled \"Log\"");
}

}  // namespace

}  // namespace simulator
