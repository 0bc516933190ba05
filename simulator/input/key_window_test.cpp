#include "simulator/input/key_window.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

class key_windows : public testing::Test {
 protected:
  Application& app(std::size_t index) { return world_.applications[index]; }
  std::string keyboard(std::size_t index) {
    const Element* field = keyboardField(world_, app(index));
    return std::to_string(keyWindowOf(app(index))) + " " +
           (field == nullptr ? "" : labelOf(*field));
  }

  World world_ = parseWorld(R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 300x300
            AXTextField "Old" at 0,0 size 9x9 disabled
            AXTextField "To" at 0,0 size 9x9
            AXTextArea "Body" at 0,0 size 9x9 focused
        window 8 "Other" at 0,0 size 300x300
            AXButton "Go" at 0,0 size 9x9
            AXTextField "Name" at 0,0 size 9x9
        window 9 "Empty" at 0,0 size 300x300
        window 10 "Rename" at 0,0 size 30x30 sheet of 8
            AXTextField "New name" at 0,0 size 9x9
    app Browser pid 42 chromium
        window 11 "Page" at 0,0 size 300x300
            AXTextField "Address" at 0,0 size 9x9 focused
        window 12 "Page" at 0,0 size 300x300
            AXTextField "Search" at 0,0 size 9x9
  )");
};

TEST_F(key_windows, remember_what_had_the_keyboard_in_them) {
  EXPECT_EQ(keyboard(0), "7 Body");
  makeKeyWindow(world_, app(0), 9);
  EXPECT_EQ(keyboard(0), "9 ");
  makeKeyWindow(world_, app(0), 7);
  EXPECT_EQ(keyboard(0), "7 Body");
}

TEST_F(key_windows, give_it_to_the_first_field_in_appkit_only) {
  closeWindow(world_, 10);
  makeKeyWindow(world_, app(0), 8);
  EXPECT_EQ(keyboard(0), "8 Name");
  makeKeyWindow(world_, app(1), 12);
  EXPECT_EQ(keyboard(1), "12 ");
  makeKeyWindow(world_, app(1), 11);
  EXPECT_EQ(keyboard(1), "11 Address");
}

TEST_F(key_windows, leave_the_keyboard_to_their_only_sheet) {
  makeKeyWindow(world_, app(0), 8);
  EXPECT_EQ(keyboard(0), "10 New name");
}

TEST_F(key_windows, keep_it_from_several_sheets) {
  openSheet(world_, app(0), 8, "Sure?");
  EXPECT_EQ(openSheets(world_, 8).size(), 2U);
  makeKeyWindow(world_, app(0), 8);
  EXPECT_EQ(keyboard(0), "8 Name");
}

TEST_F(key_windows, have_no_field_where_it_is_disabled_or_elsewhere) {
  app(0).focusedElement = findLabelled(app(0), "Old")->id;
  EXPECT_EQ(keyboard(0), "7 ");
  app(0).focusedElement = findLabelled(app(0), "Name")->id;
  EXPECT_EQ(keyboard(0), "7 ");
}

}  // namespace

}  // namespace simulator
