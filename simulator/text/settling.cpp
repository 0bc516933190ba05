#include "simulator/text/settling.h"

#include <algorithm>

#include "simulator/world/windows.h"

namespace simulator {

void settleFocus(World& world, const std::vector<bool>& without) {
  for (std::size_t i = 0; i < world.applications.size(); ++i) {
    Application& application = world.applications[i];
    if (application.focusedWindow != 0 || without[i]) continue;
    const Element* focused = findElement(application, application.focusedElement);
    const Window* window = focused == nullptr ? nullptr : findWindow(world, focused->window);
    if (window != nullptr) {
      application.focusedWindow = window->element;
    } else if (!application.windows.empty()) {
      application.focusedWindow = application.windows.front();
    }
  }
}

void settleWindows(World& world) {
  for (Application& application : world.applications) {
    if (application.hidden) setHidden(world, application, true);
  }
  sortLayers(world);
  if (world.frontmost != 0) bringToFront(world, world.frontmost);
}

void sortScript(World& world) {
  std::stable_sort(world.script.begin(), world.script.end(),
                   [](const Scripted& a, const Scripted& b) { return a.at < b.at; });
}

}  // namespace simulator
