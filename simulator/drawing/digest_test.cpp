#include "simulator/drawing/digest.h"

#include <gtest/gtest.h>

#include <functional>

#include "simulator/drawing/pictures.h"
#include "simulator/text/parse.h"
#include "tests/support/drawn_desk.h"

namespace simulator {

namespace {

using testing_support::desk;
using testing_support::windowOnGrey;

/// A change to the world or to a picture, and whether it shows.
struct Change {
  const char* name;
  bool shows;
  std::function<void(World&)> make;
};

void set(World& world, ElementId id, const char* name, AttributeValue value) {
  findElement(world.applications[0], id)->attributes[name] = std::move(value);
}

std::vector<Change> changes() {
  const auto window = [](World& world) -> Window& { return *findWindow(world, 7); };
  const auto element = [](World& world, ElementId id) -> Element& {
    return *findElement(world.applications[0], id);
  };
  return {
      {"nothing", false, [](World&) {}},
      {"title", true, [=](World& world) { window(world).title = "Outbox"; }},
      {"no title", true, [=](World& world) { window(world).title.reset(); }},
      {"place", true, [=](World& world) { window(world).frame.x += 1; }},
      {"kind", true, [](World& world) { world.applications[0].kind = ApplicationKind::chromium; }},
      {"front", true, [](World& world) { world.frontmost = 0; }},
      {"scroll down", true, [=](World& world) { window(world).scrolledLines.y = -3; }},
      {"scroll up", true, [=](World& world) { window(world).scrolledLines.y = 3; }},
      {"scroll aside", true, [=](World& world) { window(world).scrolledLines.x = 3; }},
      {"hover a button", true,
       [=](World& world) {
         window(world).hover = Point{40, 80};
       }},
      {"hover a row", true,
       [=](World& world) {
         window(world).hover = Point{200, 110};
       }},
      {"hover nothing", false,
       [=](World& world) {
         window(world).hover = Point{25, 180};
       }},
      {"label", true, [](World& world) { set(world, 2, "AXTitle", std::string("Post")); }},
      {"value", true, [](World& world) { set(world, 3, "AXValue", std::string("hello!")); }},
      {"slider", true, [](World& world) { set(world, 4, "AXValue", 0.75); }},
      {"check box", true, [](World& world) { set(world, 5, "AXValue", std::int64_t{1}); }},
      {"selected row", true, [](World& world) { set(world, 6, "AXSelected", true); }},
      {"disabled", true, [](World& world) { set(world, 2, "AXEnabled", false); }},
      {"help beside a title", false,
       [](World& world) { set(world, 2, "AXHelp", std::string("help")); }},
      {"caret", true,
       [](World& world) {
         set(world, 3, "AXSelectedTextRange", ax::Range{1, 0});
       }},
      {"selection", true,
       [](World& world) {
         set(world, 3, "AXSelectedTextRange", ax::Range{1, 3});
       }},
      {"no focus", true, [](World& world) { world.applications[0].focusedElement = 0; }},
      {"element moved", true, [=](World& world) { element(world, 2).frame->y += 1; }},
      {"element hidden", true, [=](World& world) { element(world, 2).frame.reset(); }},
      {"element removed", true, [=](World& world) { element(world, 2).removed = true; }},
      {"element of another role", true,
       [=](World& world) { element(world, 2).role = "AXCheckBox"; }},
      {"element outside", false, [=](World& world) { element(world, 7).frame->y += 1; }},
      {"element's actions", false, [=](World& world) { element(world, 2).actions.clear(); }},
      {"unknown attribute", false,
       [](World& world) { set(world, 2, "AXBanana", std::string("x")); }},
      {"application's hang", false, [](World& world) { world.applications[0].hangs = true; }},
      {"focus by record", false, [](World& world) { world.applications[0].focusByRecord = 7; }},
  };
}

TEST(picture_digests, differ_exactly_when_the_drawn_windows_do) {
  const World world = parseWorld(desk);
  const Picture before = windowOnGrey(world);
  for (const Change& change : changes()) {
    World changed = world;
    change.make(changed);
    const Picture after = windowOnGrey(changed);
    EXPECT_EQ(digest(before) != digest(after), change.shows) << change.name;
    EXPECT_EQ(drawPng(before) != drawPng(after), change.shows) << change.name;
  }
}

TEST(picture_digests, differ_exactly_when_the_drawn_surroundings_do) {
  const Picture grey = windowOnGrey(parseWorld(desk));
  const Picture screen = screenPicture(parseWorld(desk));
  struct Case {
    const char* name;
    const Picture& picture;
    bool shows;
    std::function<void(Picture&)> make;
  };
  const Case cases[] = {
      {"grey", grey, true, [](Picture& picture) { picture.backgroundGrey = 0.4; }},
      {"desktop", grey, true, [](Picture& picture) { picture.backgroundGrey.reset(); }},
      {"source", grey, true, [](Picture& picture) { picture.source.x = 5; }},
      {"width", grey, true, [](Picture& picture) { picture.width = 301; }},
      {"pointer", grey, true,
       [](Picture& picture) {
         picture.pointer = Point{9, 9};
       }},
      {"a menu bar not shown", grey, false,
       [](Picture& picture) { picture.menuBarTitle = "Mail"; }},
      {"displays not shown", grey, false,
       [](Picture& picture) {
         picture.displays.push_back({0, 0, 9, 9});
       }},
      {"menu bar", screen, true, [](Picture& picture) { picture.menuBarTitle = "Mail"; }},
      {"display", screen, true, [](Picture& picture) { picture.displays.pop_back(); }},
      {"pointer moved", screen, true, [](Picture& picture) { picture.pointer->x -= 9; }},
      {"window gone", screen, true, [](Picture& picture) { picture.windows.clear(); }},
      {"a window elsewhere", screen, false,
       [](Picture& picture) {
         picture.windows.push_back(picture.windows[0]);
         picture.windows[1].window.frame = {5000, 5000, 100, 100};
       }},
  };
  for (const Case& each : cases) {
    Picture changed = each.picture;
    each.make(changed);
    EXPECT_EQ(digest(each.picture) != digest(changed), each.shows) << each.name;
    EXPECT_EQ(drawPng(each.picture) != drawPng(changed), each.shows) << each.name;
  }
}

/// The window, and it again after a change, look alike or not; also by their digests.
bool looksAlike(const World& world, const World& changed) {
  const Picture before = windowOnGrey(world);
  const Picture after = windowOnGrey(changed);
  EXPECT_EQ(digest(before) == digest(after), drawPng(before) == drawPng(after));
  return digest(before) == digest(after);
}

/// Notes with one window, at 0,0 and 300 by 200.
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

TEST(changing_looks, follow_rows_by_their_own_texts) {
  const auto withRow = [](const std::string& label, const std::string& text) {
    return notesWith("    AXRow \"" + label +
                     "\" at 20,40 size 200x30\n      AXCell at 20,40 size " +
                     "200x30\n        AXStaticText at 30,45 size 90x20 value \"" + text + "\"\n" +
                     "      AXButton at 130,45 size 60x20\n        AXStaticText at 130,45 size " +
                     "60x20 value \"Go\"");
  };

  EXPECT_TRUE(looksAlike(withRow("Ada, unread", "Ada"), withRow("Ada", "Ada")));
  EXPECT_FALSE(looksAlike(withRow("Ada", "Ada"), withRow("Ada", "Grace")));
  EXPECT_FALSE(looksAlike(withRow("Ada", ""), withRow("Grace", "")));
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
