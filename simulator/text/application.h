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

/// The service that shows open and save panels for applications.
struct PanelDraft {
  Application application;
  PanelService service;
  bool closed = false;  // no panel shows until a reaction asks for one
};

/// Reads a panel's line, behind its first word. What it lies over stands in the world already.
PanelDraft readPanelLine(Words& words, const World& world);

}  // namespace simulator
