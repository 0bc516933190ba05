#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/macos/standins/sharing.h"

namespace standins {

struct Sharing {
  std::vector<SharedWindow> windows;
  std::vector<SharedDisplay> displays;
  CGImageRef screenshot = nullptr;
  SystemAnswer answer;
  std::string refusal;
};

/// Changed between requests only.
Sharing& sharing();

/// Calls the handler, which is held until then, as the test has told how the system answers.
void answerAsTold(const std::function<void(const std::string& error, bool hasResult)>& handler);

}  // namespace standins
