#include "simulator/world/user_state.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

std::string resolvedWith(std::map<std::string, std::string> links, const char* path) {
  System system;
  system.links = std::move(links);
  return resolved(system, "/Users/ada", path);
}

TEST(links, are_followed_wherever_they_stand) {
  EXPECT_EQ(resolvedWith({{"/a/b", "/c"}}, "/a/b/d"), "/c/d");
  EXPECT_EQ(resolvedWith({{"/a/b", "x/y"}}, "/a/b/d"), "/a/x/y/d");
  EXPECT_EQ(resolvedWith({{"/a/b", "../z"}}, "/a/b"), "/z");
  EXPECT_EQ(resolvedWith({{"/a", "/b"}, {"/b/c", "/d"}}, "/a/c/e"), "/d/e");
  EXPECT_EQ(resolvedWith({{"/a", "/b"}}, "/ab"), "/ab");
}

TEST(links, leave_the_rest_of_a_path_tidy) {
  EXPECT_EQ(resolvedWith({}, "/a//b/./c/../d/"), "/a/b/d");
  EXPECT_EQ(resolvedWith({}, "/../.."), "/");
  EXPECT_EQ(resolvedWith({}, ""), "/Users/ada");
}

TEST(links, of_a_path_that_is_not_absolute_start_in_the_directory) {
  EXPECT_EQ(resolvedWith({}, "X.app/Contents/MacOS/driver"),
            "/Users/ada/X.app/Contents/MacOS/driver");
  EXPECT_EQ(resolvedWith({{"/Users/ada/x", "../eva/y"}}, "./x/z"), "/Users/eva/y/z");
}

TEST(links, in_a_circle_are_left) {
  EXPECT_EQ(resolvedWith({{"/a", "/b"}, {"/b", "/a"}}, "/a/c"), "/a/c");
}

}  // namespace

}  // namespace simulator
