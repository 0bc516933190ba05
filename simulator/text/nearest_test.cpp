#include "simulator/text/nearest.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

const std::vector<std::string> words = {"at", "size", "value", "description", "disabled"};

TEST(nearest, finds_a_word_with_a_slip_of_the_finger) {
  EXPECT_EQ(nearest("sized", words), "size");
  EXPECT_EQ(nearest("vlaue", words), "value");
  EXPECT_EQ(nearest("desription", words), "description");
  EXPECT_EQ(nearest("disabeld", words), "disabled");
  EXPECT_EQ(nearest("att", words), "at");
}

TEST(nearest, finds_nothing_where_nothing_is_near) {
  EXPECT_EQ(nearest("colour", words), "");
  EXPECT_EQ(nearest("size", words), "");
  EXPECT_EQ(nearest("a", words), "");
  EXPECT_EQ(nearest(std::string(100, 'a'), {std::string(99, 'a')}), "");
}

TEST(nearest, prefers_the_nearer_and_then_the_first) {
  EXPECT_EQ(nearest("sise", {"sides", "size", "side"}), "size");
}

}  // namespace

}  // namespace simulator
