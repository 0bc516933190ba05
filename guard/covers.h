#pragma once

#include <cstddef>

/// The covers over all screens. Main flow only.
namespace driver {

/// Covers every connected screen. How many covers there are.
std::size_t coverScreens();

/// Has covers follow the screens from now on: a screen that is new, or has another size or place,
/// is covered, every cover is put in its place again, and covers without a screen go once all
/// screens are covered. While there is no screen at all, they stay.
void followScreens();

/// Switches what the covers say of the agent: at work, or minding the Mac.
void setGuardOperating(bool operating);

/// Has the covers say how much grace is left.
void refreshGuardHints();

}  // namespace driver
