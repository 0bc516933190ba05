#pragma once

#include <string>

#include "platform/call.h"
#include "simulator/world/world.h"

/// Menus as macOS tracks them, in applications that do so: while one is open its application takes
/// nothing but input to the menu.
namespace simulator {

/// Whether a menu of the application is open that it tracks.
bool isTrackingMenu(const Application& application);

/// Whether an event that is posted to the application has to wait until its menu has closed: one
/// that is neither off screen nor at a point of the menu.
bool waitsForMenu(const World& world, const Application& application,
                  const platform::EventImage& event);

/// The user presses a button at a point: a menu that is tracked closes, unless the point is in it,
/// and nobody else gets the press. Gives a sentence for the journal then, otherwise nothing.
std::string closeTrackedMenu(World& world, Point point);

/// The user presses a key while the application tracks a menu: the escape key closes it. Gives a
/// sentence for the journal.
std::string takeKeyInMenu(Application& application, std::int64_t code);

}  // namespace simulator
