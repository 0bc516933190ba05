#include "simulator/drawing/drawn_pictures.h"

#include <gtest/gtest.h>

#include "simulator/drawing/pictures.h"

using simulator::DrawnPictures;
using simulator::Picture;

namespace {

Picture plain(double grey) {
  Picture picture;
  picture.source = {0, 0, 4, 4};
  picture.width = 4;
  picture.height = 4;
  picture.backgroundGrey = grey;
  return picture;
}

TEST(DrawnPictures, gives_what_drawing_gives) {
  DrawnPictures drawn;
  EXPECT_EQ(*drawn.png(plain(0.5)), simulator::drawPng(plain(0.5)));
  EXPECT_EQ(*drawn.png(plain(0.5)), simulator::drawPng(plain(0.5)));
  EXPECT_EQ(drawn.png({}), nullptr);
}

TEST(DrawnPictures, draws_what_has_not_changed_once) {
  DrawnPictures drawn;
  const auto first = drawn.png(plain(0.5));
  const auto other = drawn.png(plain(0.25));
  EXPECT_EQ(drawn.png(plain(0.5)), first);
  EXPECT_EQ(drawn.png(plain(0.25)), other);
}

TEST(DrawnPictures, forgets_what_nobody_has_asked_for_the_longest) {
  DrawnPictures drawn;
  const auto asked = drawn.png(plain(0));
  const auto forgotten = drawn.png(plain(1));
  for (std::size_t i = 2; i <= DrawnPictures::kept; ++i) {
    drawn.png(plain(1.0 / static_cast<double>(i)));
    EXPECT_EQ(drawn.png(plain(0)), asked);
  }
  EXPECT_EQ(drawn.png(plain(0)), asked);
  EXPECT_NE(drawn.png(plain(1)), forgotten);
}

}  // namespace
