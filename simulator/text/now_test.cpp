#include "simulator/text/now.h"

#include <gtest/gtest.h>

#include <string>

#include "simulator/text/parse.h"
#include "tests/support/world_errors.h"

namespace simulator {

namespace {

using testing_support::errorOf;

constexpr const char* later = " is of a Mac that has run before, whose world begins with 'clock'";

TEST(lines_of_snapshots, are_of_worlds_that_begin_with_a_clock) {
  EXPECT_EQ(errorOf("now frontmost 41"), std::string("line 1: 'now'") + later);
  EXPECT_EQ(errorOf("app Notes pid 41\n    AXGroup id 3"), std::string("line 2: 'id'") + later);
  EXPECT_EQ(errorOf("app Notes pid 41\n    gone id 3 window 7"),
            std::string("line 2: 'gone'") + later);
  EXPECT_EQ(errorOf("at 5s drawn 7 lock"), std::string("line 1: 'drawn'") + later);
  EXPECT_EQ(errorOf("app Notes pid 41\nclock 5s"),
            "line 2: 'clock' stands once, ahead of all else");
  EXPECT_EQ(errorOf("clock 5s\nclock 6s"), "line 2: 'clock' stands once, ahead of all else");
}

TEST(lines_of_snapshots, say_what_cannot_be_so) {
  EXPECT_EQ(errorOf("clock 5s\nnow frontmots 41"),
            "line 2: unknown word 'frontmots'; did you mean 'frontmost'?");
  EXPECT_EQ(errorOf("clock 5s\nnow pointer"), "line 2: 'now' needs X,Y");
  EXPECT_EQ(errorOf("clock 5s\nnow keyboard ( layout us"), "line 2: a ')' is missing");
  EXPECT_EQ(errorOf("clock 5s\nnow processes 4,x"),
            "line 2: expected numbers such as 1,4..7, or none");
  EXPECT_EQ(errorOf("clock 5s\napp Notes pid 41\n    AXGroup id 3\n    AXGroup id 3"),
            "line 4: element id 3 is taken");
  EXPECT_EQ(errorOf("clock 5s\napp Notes pid 41\n    AXGroup id 300000\n"
                    "app Mail pid 42\n    AXGroup id 300000"),
            "line 5: more than 500,000 elements");
}

TEST(lines_of_snapshots, say_nothing_that_no_mac_comes_to) {
  EXPECT_EQ(errorOf("clock 5s\napp Notes pid 41\n    AXGroup id 3\n        now children 7"),
            "line 1: process 41 has no element 7");
  EXPECT_EQ(errorOf("clock 5s\napp Notes pid 41\n    AXGroup id 3\n        now parent 3"),
            "line 1: element 3 is in itself");
  EXPECT_EQ(errorOf("clock 5s\napp Notes pid 41\n    window 7 at 0,0 size 9x9\n"
                    "        now sheet-of 7"),
            "line 1: window 7 is a sheet of itself");
  EXPECT_EQ(errorOf("clock 5s\nnow frontmost 41"), "line 1: there is no process 41");
  EXPECT_EQ(errorOf("clock 5s\napp Notes pid 41\n    AXGroup id 3\n        now scrolled-by 3"),
            "line 1: element 3 scrolls in nothing");
  EXPECT_EQ(errorOf("clock 5s\nnow pending ( ( due 6s pid 41 element 1 ) )"),
            "line 1: there is no process 41");
  EXPECT_EQ(errorOf("clock 5s\napp Notes pid 41\n    AXGroup id 3\n"
                    "        now habits ( scrolling lazy )\n"
                    "    AXGroup id 4\napp Mail pid 42\n    now scroll-areas ( ( id 1 ) )"),
            "line 1: process 42 has no element 1");
}

TEST(lines_of_snapshots, let_nothing_come_of_itself) {
  const World world = parseWorld("clock 5s\napp Notes pid 41\n    window 7 at 0,0 size 9x9\n");

  EXPECT_EQ(world.present, 5'000'000);
  EXPECT_TRUE(world.displays.empty());
  EXPECT_TRUE(world.files.empty());
  EXPECT_EQ(world.applications[0].focusedWindow, 0);
}

}  // namespace

}  // namespace simulator
