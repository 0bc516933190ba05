#include "simulator/text/layout.h"

#include <gtest/gtest.h>

#include "base/numbers.h"
#include "simulator/text/parse.h"
#include "tests/support/world_errors.h"

namespace simulator {

namespace {

using testing_support::errorOf;

const std::string aWindow = "app A pid 1\n  window 7 \"W\" at 100,50 size 400x300\n";

/// The frames of all labelled elements of the world's application, in order.
std::string framesOf(const std::string& lines) {
  const World world = parseWorld(aWindow + lines);
  std::string text;
  for (const Element& each : world.applications[0].elements) {
    if (each.role == "AXWindow" || labelOf(each).empty()) continue;
    const Rect frame = each.frame.value_or(Rect{-1, -1, -1, -1});
    const auto number = [](double value) { return std::to_string(static_cast<int>(value)); };
    text += labelOf(each) + " " + number(frame.x) + "," + number(frame.y) + " " +
            number(frame.width) + "x" + number(frame.height) + "\n";
  }
  return text;
}

TEST(layout, places_an_element_below_and_right_of_others) {
  EXPECT_EQ(framesOf("    AXButton \"a\" at 110,60 size 80x20\n"
                     "    AXButton \"b\" right of previous gap 8\n"
                     "    AXButton \"c\" right of previous\n"
                     "    AXGroup\n"
                     "    AXButton \"d\" below a gap 4 width 100\n"
                     "    AXButton \"e\" below \"b\" height 5\n"
                     "    AXButton \"f\" right of previous gap 1 size 9x9\n"),
            "a 110,60 80x20\n"
            "b 198,60 80x20\n"
            "c 278,60 80x20\n"
            "d 110,84 100x20\n"
            "e 198,80 80x5\n"
            "f 279,80 9x9\n");
}

TEST(layout, puts_the_first_one_at_the_top_left_of_what_it_is_in) {
  EXPECT_EQ(framesOf("    AXList \"l\" inside 20 width 200\n"
                     "      AXRow \"1\" below previous gap 4 inside 5 fill width height 40\n"
                     "        AXCell \"cell\" inside 2\n"
                     "      AXRow \"2\" below previous gap 4\n"
                     "    AXGroup \"g\" right of l fill\n"
                     "    AXGroup \"h\" below g gap 500 fill height\n"),
            "l 120,70 200x260\n"
            "1 125,75 190x40\n"
            "cell 127,77 186x36\n"
            "2 125,119 190x40\n"
            "g 320,70 180x280\n"
            "h 320,850 180x0\n");
}

TEST(layout, takes_a_place_and_a_size_where_they_are_given) {
  EXPECT_EQ(framesOf("    AXButton \"a\" at 110,60 fill\n"
                     "    AXButton \"b\" at 110,60 width 10 fill height\n"
                     "    AXButton \"c\" inside 10 size 20x20\n"
                     "    AXGroup\n"
                     "      AXButton \"d\" width 10 height 12\n"),
            "a 110,60 390x290\n"
            "b 110,60 10x290\n"
            "c 110,60 20x20\n"
            "d 100,50 10x12\n");
}

TEST(layout, goes_by_the_nearest_sibling_with_the_label) {
  EXPECT_EQ(framesOf("    AXButton \"x\" at 110,60 size 80x20\n"
                     "    AXGroup\n"
                     "      AXButton \"x\" at 200,60 size 10x10\n"
                     "      AXButton \"y\" below x\n"),
            "x 110,60 80x20\nx 200,60 10x10\ny 200,70 10x10\n");
}

TEST(layout, refuses_what_has_no_place) {
  struct BadLine {
    const char* line;
    const char* error;
  };
  const BadLine cases[] = {
      {"AXButton below",
       "'below' needs 'previous', or the label of an element above in the same one"},
      {"AXButton right previous", "'right' needs 'of' after it, not 'previous'"},
      {"AXButton below previous", "nothing stands before it: it needs a size of its own"},
      {"AXButton below previous width 3", "nothing stands before it: it needs a size of its own"},
      {"AXButton below Sned size 3x3", "no element above in the same one is labelled \"Sned\""},
      {"AXButton below previous right of previous", "it is either 'below' or 'right of'"},
      {"AXButton at 1,2 below previous size 3x3", "its place is given twice"},
      {"AXButton inside 1 size 3x3 width 3", "its size is given twice"},
      {"AXButton fill width width 3", "its size is given twice"},
      {"AXButton below previous gap nan", "'gap' needs a finite number"},
      {"AXButton width -1", "'width' needs a number from 0 on"},
      {"AXButton height x", "'height' needs a number, not 'x'"},
  };
  for (const BadLine& each : cases) {
    EXPECT_EQ(errorOf(aWindow + "    " + each.line), std::string("line 3: ") + each.error);
  }
  EXPECT_EQ(errorOf("app A pid 1\n  AXButton inside 3"), "line 2: nothing around it has a place");
}

}  // namespace

}  // namespace simulator
