#pragma once

#include <vector>

#include "simulator/text/elements.h"
#include "simulator/text/words.h"
#include "simulator/world/world.h"

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

}  // namespace simulator
