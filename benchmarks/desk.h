#pragma once

#include "simulator/text/parse.h"
#include "simulator/world/world.h"

/// The world of the benchmarks.
inline const simulator::World& desk() {
  static const simulator::World world = simulator::parseWorld(R"(
    display 1 1440x900 scale 2
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 1200x700
            AXLink "News" at 10,60 size 80x20
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,120 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 120,150 size 700x400 value "hello"
)");
  return world;
}
