#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-menu" and "ax-menubar".
namespace ax_menu_test {

using namespace testing_support;
using Words = std::vector<std::string>;

constexpr const char* desk = R"(
    display 1 1440x900
    app Browser pid 40 frontmost
    app Notes pid 41
        menu Notes > "About Notes"
        menu File > New cmd n press: append "new " to Log
        menu File > "Export as PDF…" press: append "pdf " to Log
        menu File > "Export…" press: append "export " to Log
        menu File > -
        menu File > "Save As…" press: append "saved " to Log
        menu File > "Open Recent" > "First.txt" press: append "first " to Log
        menu File > "Open Recent" > "Clear Menu" disabled press: append "cleared " to Log
        menu File > "Page\tSetup..." press: append "page " to Log
        menu Edit > Undo disabled press: append "undone " to Log
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Log" at 120,130 size 700x400
)";

const std::string enabling = R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
)";

std::string pressed(const std::string& path) {
  return success(R"({"axError":0,"ok":true,"pressed":")" + path + R"("})");
}

std::string refused(const std::string& error) {
  return success(R"({"error":")" + error + R"(","ok":false})");
}

Words menu(const Words& path) {
  Words words = {"ax-menu", "Notes"};
  words.insert(words.end(), path.begin(), path.end());
  return words;
}

TEST(ax_menu, presses_the_item_at_the_end_of_the_path) {
  TestMac mac(desk);

  const Result run = mac.driverWith(menu({"File", "Open Recent", "First.txt"}));

  EXPECT_EQ(seen(run), pressed("File > Open Recent > First.txt"));
  EXPECT_EQ(run.elapsed, 0);
  EXPECT_EQ(run.effects.rfind(enabling + "    0 ms  action 41/0 AXPress: ", 0), 0U) << run.effects;
  EXPECT_EQ(mac.valueOf("Notes", "Log"), "first ");
}

TEST(ax_menu, compares_titles_without_case_white_space_and_ellipses) {
  const std::pair<Words, const char*> cases[] = {
      {{"File", "Save As..."}, "File > Save As\u2026"},
      {{"file", "save as"}, "File > Save As\u2026"},
      {{" FILE ", "\u2026Save \n As"}, "File > Save As\u2026"},
      {{"File\u2026", "page setup\u2026"}, "File > Page\\tSetup..."}};
  for (const auto& [path, walked] : cases) {
    TestMac mac(desk);
    EXPECT_EQ(seen(mac.driverWith(menu(path))), pressed(walked));
  }
}

TEST(ax_menu, prefers_the_whole_title_to_an_earlier_beginning) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driverWith(menu({"File", "Export"}))), pressed("File > Export\u2026"));
  EXPECT_EQ(mac.valueOf("Notes", "Log"), "export ");
}

TEST(ax_menu, takes_the_first_title_that_begins_so) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driverWith(menu({"Fi", "exp"}))), pressed("File > Export as PDF\u2026"));
  EXPECT_EQ(mac.valueOf("Notes", "Log"), "pdf ");
}

TEST(ax_menu, takes_no_title_that_only_contains_the_word) {
  TestMac mac(desk);
  EXPECT_EQ(
      seen(mac.driverWith(menu({"File", "Recent"}))),
      refused("no menu item \\\"Recent\\\" under File; available: New | Export as PDF\u2026 | "
              "Export\u2026 | Save As\u2026 | Open Recent | Page\\tSetup..."));
  EXPECT_EQ(mac.valueOf("Notes", "Log"), "");
}

TEST(ax_menu, names_what_there_is_when_a_title_is_unknown) {
  const std::pair<Words, const char*> cases[] = {
      {{"Fiel", "New"},
       "no menu item \\\"Fiel\\\" under the menu bar; available: Notes | File | Edit"},
      {{"file", "open recent", "Nope"},
       "no menu item \\\"Nope\\\" under File > Open Recent; available: First.txt | Clear Menu"},
      {{"File", "New", "x"}, "no menu item \\\"x\\\" under File > New; available: "}};
  for (const auto& [path, error] : cases) {
    TestMac mac(desk);
    const Result run = mac.driverWith(menu(path));
    EXPECT_EQ(seen(run), refused(error));
    EXPECT_EQ(run.effects, enabling);
  }
}

TEST(ax_menu, takes_the_item_without_a_title_for_an_empty_one) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driverWith(menu({"File", "..."}))), refused("menu item File >  is disabled"));
  // Without such an item, the first title begins with nothing.
  EXPECT_EQ(seen(mac.driverWith(menu({"Edit", ""}))), refused("menu item Edit > Undo is disabled"));
}

TEST(ax_menu, does_not_press_a_disabled_item) {
  TestMac mac(desk);

  const Result run = mac.driverWith(menu({"File", "Open Recent", "Clear"}));

  EXPECT_EQ(seen(run), refused("menu item File > Open Recent > Clear Menu is disabled"));
  EXPECT_EQ(run.effects, enabling);
  EXPECT_EQ(mac.valueOf("Notes", "Log"), "");
}

constexpr const char* ownBar = R"(
    display 1 1440x900
    app Notes pid 41
        AXMenuBar
            AXMenuBarItem "File" disabled
                AXMenu
                    AXMenuItem "One"
                    AXMenuItem failing AXTitle -25204
                AXMenu
                    AXMenuItem "Two" replying -25204
                    AXMenuItem "Odd" attribute AXEnabled 0
                    AXMenuItem "Still" actions none
            AXMenuBarItem
            AXMenuBarItem "Edit"
)";

TEST(ax_menu, looks_through_all_menus_of_an_item_whether_it_is_enabled_or_not) {
  TestMac mac(ownBar);
  EXPECT_EQ(seen(mac.driverWith(menu({"File", "One"}))), pressed("File > One"));
  EXPECT_EQ(seen(mac.driverWith(menu({"File", "None"}))),
            refused("no menu item \\\"None\\\" under File; available: One | Two | Odd | Still"));
}

TEST(ax_menu, reports_the_code_of_a_failed_press) {
  TestMac mac(ownBar);
  EXPECT_EQ(seen(mac.driverWith(menu({"File", "Two"}))),
            success(R"({"axError":-25204,"ok":false,"pressed":"File > Two"})"));
  EXPECT_EQ(seen(mac.driverWith(menu({"File", "Still"}))),
            success(R"({"axError":-25206,"ok":false,"pressed":"File > Still"})"));
}

TEST(ax_menu, is_disabled_only_by_a_boolean) {
  TestMac mac(ownBar);
  EXPECT_EQ(seen(mac.driverWith(menu({"File", "Odd"}))), pressed("File > Odd"));
}

TEST(ax_menu, belongs_to_the_application_whatever_the_window_scope) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driverWith(menu({"File", "New"}), {{"CU_WINDOW", "archive"}})),
            pressed("File > New"));
}

TEST(ax_menu, has_nothing_where_there_is_no_menu_bar) {
  const char* none = "\n    app Notes pid 41\n";
  TestMac mac(none);
  EXPECT_EQ(seen(mac.driverWith(menu({"File"}))),
            refused("no menu item \\\"File\\\" under the menu bar; available: "));
  EXPECT_EQ(seen(mac.driver("ax-menubar Notes")), success(R"({"menus":[],"ok":true})"));
  TestMac hung("\n    app Notes pid 41 hangs\n");
  EXPECT_EQ(seen(hung.driver("ax-menubar Notes")), success(R"({"menus":[],"ok":true})"));
}

TEST(ax_menu, needs_its_words) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("ax-menu Notes")), failure("usage: ax-menu <app> <title>..."));
  EXPECT_EQ(seen(mac.driver("ax-menu Nobody File")), failure("app not running: Nobody"));
  EXPECT_EQ(seen(mac.driver("ax-menubar")), failure("usage: ax-menubar <app>"));
  EXPECT_EQ(seen(mac.driver("ax-menubar Nobody")), failure("app not running: Nobody"));
}

TEST(ax_menubar, lists_the_titles_in_order_empty_ones_included) {
  TestMac mac(desk);
  const Result run = mac.driver("ax-menubar Notes", {{"CU_WINDOW", "archive"}});
  EXPECT_EQ(seen(run), success(R"({"menus":["Notes","File","Edit"],"ok":true})"));
  EXPECT_EQ(run.effects, enabling);
  TestMac own(ownBar);
  EXPECT_EQ(seen(own.driver("ax-menubar Notes")),
            success(R"({"menus":["File","","Edit"],"ok":true})"));
}

TEST(ax_menu, looks_into_20000_menus_of_an_item) {
  const auto pressedBehind = [](int emptyMenus) {
    TestMac mac(R"(
    app Notes pid 41
        AXMenuBar
            AXMenuBarItem "File"
                AXMenu repeat )" +
                std::to_string(emptyMenus) + R"(
                AXMenu
                    AXMenuItem "New"
)");
    return seen(mac.driverWith(menu({"File", "New"})));
  };
  EXPECT_EQ(pressedBehind(19'999), pressed("File > New"));
  EXPECT_EQ(pressedBehind(20'000), refused(R"(no menu item \"New\" under File; available: )"));
}

}  // namespace ax_menu_test
