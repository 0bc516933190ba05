#include "simulator/input/menu_tracking.h"

#include "simulator/input/posted_event.h"
#include "simulator/world/controls.h"
#include "simulator/world/elements.h"
#include "simulator/world/keyboard_layouts.h"
#include "simulator/world/presses.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

constexpr Point awayFromScreen{-1, -1};

/// What is hit at a point of the window is in the application's open menu.
bool hitsMenu(const Application& application, const Window& window, Point point) {
  const Element* hit = findElement(application, elementAt(application, window, point));
  return hit != nullptr && isInOpenMenu(application, *hit);
}

}  // namespace

bool isTrackingMenu(const Application& application) {
  return application.tracksMenus && application.openMenu != 0;
}

bool waitsForMenu(const World& world, const Application& application,
                  const platform::EventImage& event) {
  if (!isTrackingMenu(application)) return false;
  if (isKeyEvent(event)) return true;
  if (event.location == awayFromScreen) return false;
  const auto number = static_cast<WindowNumber>(fieldOf(event, quartz::Field::targetWindow));
  const Window* window = findWindow(world, number);
  return window == nullptr || !hitsMenu(application, *window, event.location);
}

std::string closeTrackedMenu(World& world, Point point) {
  const Window* window = topmostAt(world, point);
  std::string closed;
  for (Application& application : world.applications) {
    if (!application.running || !isTrackingMenu(application)) continue;
    const bool isOwner = window != nullptr && window->owner == application.pid;
    if (isOwner && hitsMenu(application, *window, point)) continue;
    application.openMenu = 0;
    closed += (closed.empty() ? "" : "; ") +
              application.name.value_or("pid:" + std::to_string(application.pid)) +
              ": closed a menu";
  }
  return closed;
}

std::string takeKeyInMenu(Application& application, std::int64_t code) {
  if (code != key_codes::escape) return "the open menu takes the key";
  application.openMenu = 0;
  return "closed a menu";
}

}  // namespace simulator
