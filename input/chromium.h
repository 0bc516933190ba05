#pragma once

#include "platform/workspace.h"

namespace driver {

/// True when the application's bundle holds the Chromium engine, whose windows take pointer input
/// by other routes and in other coordinates.
bool isChromium(const workspace::Application& app);

}  // namespace driver
