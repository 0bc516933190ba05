#include "simulator/world/panels.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/presses.h"

namespace simulator {

namespace {

constexpr const char* editorDesk = R"(
    app Editor pid 41 frontmost
        menu File > "Save As…" cmd shift s press: save panel
        menu File > Open press: open panel
        window 7 "Draft" at 100,80 size 800x600
    panel pid 50 window 60 over 7 closed
)";

class panels : public testing::Test {
 protected:
  std::string choose(const std::string& label) { return pressIn(0, label); }
  std::string pressIn(std::size_t application, const std::string& label) {
    Application& one = world_.applications[application];
    return simulator::press(world_, one, findLabelled(one, label)->id);
  }
  std::vector<std::string> labels() {
    std::vector<std::string> found;
    for (const Element& each : world_.applications[1].elements) {
      if (!each.removed) found.push_back(labelOf(each));
    }
    return found;
  }
  std::vector<WindowNumber> numbers() const {
    std::vector<WindowNumber> result;
    for (const Window& window : world_.windows) result.push_back(window.number);
    return result;
  }

  World world_ = parseWorld(editorDesk);
};

TEST_F(panels, one_that_is_closed_comes_from_its_menu) {
  EXPECT_EQ(numbers(), std::vector<WindowNumber>{7});
  choose("Save As…");

  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{60, 7}));
  EXPECT_EQ(findWindow(world_, 60)->frame, (Rect{100, 80, 480, 200}));
  EXPECT_EQ(labels(), (std::vector<std::string>{"Save", "Save As:", "Cancel", "Save"}));
  EXPECT_EQ(choose("Save As…"), "pressed AXMenuItem \"Save As…\", finds a panel there");
}

TEST_F(panels, the_next_one_is_another_window) {
  choose("Save As…");
  pressIn(1, "Cancel");
  EXPECT_EQ(numbers(), std::vector<WindowNumber>{7});
  choose("Open");

  EXPECT_EQ(numbers(), (std::vector<WindowNumber>{61, 7}));
  EXPECT_EQ(labels(), (std::vector<std::string>{"Open", "Cancel", "Open"}));
  EXPECT_EQ(world_.applications[1].focusedElement, 0);
}

TEST_F(panels, none_comes_over_a_window_that_has_gone) {
  world_.windows.clear();

  EXPECT_EQ(choose("Open"), "pressed AXMenuItem \"Open\", finds no window for a panel");
}

}  // namespace

}  // namespace simulator
