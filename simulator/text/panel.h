#pragma once

#include "simulator/text/words.h"
#include "simulator/world/world.h"

namespace simulator {

/// The service that shows open and save panels for applications, with its one window.
struct PanelDraft {
  Application application;
  Window window;
  WindowNumber over = 0;  // the window of the application that the panel is for
};

/// Reads a panel's line, behind its first word. What it lies over stands in the world already.
PanelDraft readPanelLine(Words& words, const World& world);

}  // namespace simulator
