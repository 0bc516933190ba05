#include <gtest/gtest.h>

#include "simulator/drawing/pictures.h"
#include "simulator/text/parse.h"

namespace simulator {

namespace {

Picture windowOnGrey(const World& world) {
  Picture picture;
  picture.width = 300;
  picture.height = 200;
  picture.source = {0, 0, 300, 200};
  picture.backgroundGrey = 0.5;
  picture.windows.push_back(pictureOf(world, *findWindow(world, 7)));
  return picture;
}

/// The window, and it again after a change, look alike or not; also by their digests.
bool looksAlike(const World& world, const World& changed) {
  const Picture before = windowOnGrey(world);
  const Picture after = windowOnGrey(changed);
  EXPECT_EQ(digest(before) == digest(after), drawPng(before) == drawPng(after));
  return digest(before) == digest(after);
}

/// The first window of Notes alone, at 0,0 and 300 by 200.
World notesWith(const std::string& lines) {
  return parseWorld("app Notes pid 41 frontmost\n  window 7 \"N\" at 0,0 size 300x200\n" + lines);
}

TEST(changing_looks, follow_menus_that_open) {
  const World closed = notesWith(
      "    AXPopUpButton \"Size\" at 20,40 size 100x24 choices \"Small\" \"Large\"\n"
      "    AXButton \"Below\" at 20,66 size 100x40");
  const World without = notesWith(
      "    AXPopUpButton \"Size\" at 20,40 size 100x24 value \"Small\"\n"
      "    AXButton \"Below\" at 20,66 size 100x40");
  World open = closed;
  open.applications[0].openMenu = 3;
  World hovered = open;
  hovered.windows[0].hover = Point{30, 95};

  EXPECT_TRUE(looksAlike(closed, without));
  EXPECT_FALSE(looksAlike(closed, open));
  EXPECT_FALSE(looksAlike(open, hovered));
}

TEST(changing_looks, follow_rows_whose_controls_come_with_the_pointer) {
  const std::string row = "    AXGroup at 20,40 size 200x30\n";
  const World with = notesWith(row + "      AXButton \"X\" at 30,45 size 20x20 while hovered");
  World hovered = with;
  hovered.windows[0].hover = Point{180, 50};

  EXPECT_TRUE(looksAlike(with, notesWith(row)));
  EXPECT_FALSE(looksAlike(with, hovered));
}

TEST(changing_looks, show_bullets_for_a_secure_text) {
  const std::string field = "    AXTextField \"F\" at 20,40 size 200x30 subrole AXSecureTextField ";

  EXPECT_TRUE(looksAlike(notesWith(field + "value \"abc\""), notesWith(field + "value \"xyz\"")));
  EXPECT_FALSE(looksAlike(notesWith(field + "value \"abc\""), notesWith(field + "value \"ab\"")));
}

TEST(changing_looks, show_a_composers_text_once) {
  const std::string field = "    AXTextArea \"F\" at 20,40 size 200x80 value \"abc\" ";

  EXPECT_TRUE(looksAlike(notesWith(field), notesWith(field + "composer")));
}

TEST(changing_looks, follow_the_menus_of_the_menu_bar) {
  const Picture plain = screenPicture(parseWorld("app A pid 1 frontmost"));
  const Picture own = screenPicture(parseWorld("app A pid 1 frontmost\n  menu 文件 > 打开"));

  EXPECT_EQ(own.menuTitles, std::vector<std::string>{"文件"});
  EXPECT_NE(digest(plain), digest(own));
  EXPECT_NE(drawPng(plain), drawPng(own));
}

}  // namespace

}  // namespace simulator
