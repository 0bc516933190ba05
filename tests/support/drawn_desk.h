#pragma once

#include "simulator/drawing/pictures.h"

/// A desk to be drawn, with most of what there is.
namespace testing_support {

inline constexpr const char* desk = R"(
    display 1 300x220 scale 1
    display 2 100x100 at 300,0
    pointer 290,210
    app Notes pid 41 frontmost
        window 7 "Inbox" at 20,30 size 240x160
            AXButton "Send" at 30,70 size 60x20
            AXTextArea "Body" at 30,100 size 150x60 value "hello" focused
            AXSlider at 100,70 size 80x20 value 0.5
            AXCheckBox "Encrypt" at 190,70 size 60x20
            AXRow "Row" at 190,100 size 60x20
            AXButton "Far away" at 1000,1000 size 60x20
            AXButton "Nowhere"
        window 8 "Small" at 100,40 size 50x50 off-screen
)";

/// Window 7 of a world alone, before a grey of 0.5; a point is a pixel.
inline simulator::Picture windowOnGrey(const simulator::World& world) {
  simulator::Picture picture;
  picture.width = 300;
  picture.height = 220;
  picture.source = {0, 0, 300, 220};
  picture.backgroundGrey = 0.5;
  picture.windows.push_back(pictureOf(world, *findWindow(world, 7)));
  return picture;
}

}  // namespace testing_support
