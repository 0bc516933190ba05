#pragma once

#include <vector>

#include "simulator/world.h"
#include "simulator/world_text_elements.h"
#include "simulator/world_text_words.h"

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
