#include "simulator/drawing/picture_codec.h"

#include <gtest/gtest.h>

#include "base/datum.h"
#include "simulator/drawing/digest.h"
#include "simulator/drawing/pictures.h"
#include "simulator/text/parse.h"

namespace simulator {

namespace {

/// A desk with whatever is drawn of one.
World deskToKeep() {
  World world = parseWorld(R"(
    display 1 1440x900 scale 2
    display 2 800x600 at 1440,0
    pointer 30,40
    user "Ada Lovelace" login ada
    app Browser pid 40 chromium frontmost
        menu File > New
        window 5 "Start" at 0,30 size 600x500
            AXTextField "Address" value "example" at 10,40 size 300x20 focused
            AXCheckBox "On" value 1 at 10,70 size 90x20
            AXSlider "Size" at 10,100 size 100x20 range 0..10 step 0.5
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXPopUpButton "Kind" at 120,90 size 60x20 choices "One" "Two"
            AXTextArea "Body" value "hello\nyou" at 120,130 size 700x400
            AXButton "Off" at 120,560 size 60x20 attribute AXEnabled false
            AXSecureTextField "Secret" value "word" at 220,560 size 60x20
)");
  world.sharings.push_back({1, 5'000'000, 7, 41, {}, 0});
  Cover cover;
  cover.frame = {1440, 0, 800, 600};
  cover.dimmingAlpha = 0.4;
  cover.pictures.push_back({{Portrait::Kind::face, "/tmp/a.png"}, {10, 10, 64, 64}, true});
  cover.labels.push_back(
      {"is using this Mac", {13, cover::Weight::semibold}, 0.85, {10, 90, 200, 20}});
  world.covers.push_back(cover);
  world.windows[0].hover = Point{20, 50};
  world.windows[0].scrolledLines = {0, 3};
  return world;
}

TEST(encodedPicture, is_drawn_as_before_when_it_is_decoded) {
  World world = deskToKeep();
  for (const bool locked : {false, true}) {
    world.session.locked = locked;
    const Picture picture = screenPicture(world);

    const Picture again = decodedPicture(encodedPicture(picture));

    EXPECT_EQ(digest(again), digest(picture));
    EXPECT_EQ(drawPng(again), drawPng(picture));
  }
}

TEST(encodedPicture, keeps_a_picture_of_a_window_alone) {
  const World world = deskToKeep();
  Picture picture;
  picture.width = 80;
  picture.height = 60;
  picture.source = world.windows[0].frame;
  picture.backgroundGrey = 0.5;
  picture.windows = {pictureOf(world, world.windows[0])};

  EXPECT_EQ(drawPng(decodedPicture(encodedPicture(picture))), drawPng(picture));
}

TEST(decodedPicture, takes_nothing_else) {
  std::string bytes = encodedPicture(screenPicture(deskToKeep()));

  EXPECT_THROW(decodedPicture(bytes + "x"), driver::MalformedDatum);
  bytes.pop_back();
  EXPECT_THROW(decodedPicture(bytes), driver::MalformedDatum);
  EXPECT_THROW(decodedPicture(""), driver::MalformedDatum);
}

}  // namespace

}  // namespace simulator
