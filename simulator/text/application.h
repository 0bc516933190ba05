#pragma once

#include <vector>

#include "simulator/text/elements.h"
#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// Lines of applications: one's own, and the service for open and save panels.
namespace simulator {

struct ApplicationDraft {
  Application application;
  std::vector<std::string> files;  // of its bundle
  std::vector<LinkDraft> links;
  bool frontmost = false;
  bool withoutFocusedWindow = false;
};

/// Reads an application's line, behind its first word.
ApplicationDraft readApplicationLine(Words& words);

/// The service that shows open and save panels for applications, with its one window.
struct PanelDraft {
  Application application;
  Window window;
  WindowNumber over = 0;  // the window of the application that the panel is for
};

/// Reads a panel's line, behind its first word. What it lies over stands in the world already.
PanelDraft readPanelLine(Words& words, const World& world);

}  // namespace simulator
