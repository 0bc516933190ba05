#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <optional>
#include <string>
#include <vector>

/// The application with its screens and panels.
namespace standins {

/// Has the screens have these frames.
void setScreens(std::vector<CGRect> frames);

/// The panels that are on a screen, the hindmost first, each with all that is on it.
std::vector<std::string> shownPanels();

/// What the application's delegate says when asked to terminate; nothing without one.
std::optional<bool> askToTerminate();

/// The application's delegate is no test's: it is there until the process ends.
void keepDelegateForEver();

/// Tells the application's delegate that the screens have changed.
void changeScreens();

}  // namespace standins
