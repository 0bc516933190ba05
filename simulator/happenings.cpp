#include <string_view>

#include "simulator/applications.h"
#include "simulator/element_text.h"
#include "simulator/fields.h"
#include "simulator/windows.h"

namespace simulator {

namespace {

/// While the login window is in front, what the user does reaches no application.
bool reachesApplications(const World& world) {
  return !world.session.locked.value_or(false) && world.session.onConsole.value_or(true);
}

void pressKey(World& world, std::string_view key) {
  Application* application = findApplication(world, world.frontmost);
  if (application == nullptr || application->hangs) return;
  const ElementId focused = application->focusedElement;
  if (findElement(*application, focused) == nullptr) return;
  if (key == "delete" || key == "backspace") {
    dropLastCharacter(*application, focused);
  } else if (key == "return" || key == "enter") {
    addText(*application, focused, "\n");
  } else if (key == "tab") {
    addText(*application, focused, "\t");
  } else if (key == "space") {
    addText(*application, focused, " ");
  } else if (characterCount(key) == 1) {
    addText(*application, focused, std::string(key));
  }
}

void movePointer(World& world, Point point) {
  world.pointer = point;
  if (!reachesApplications(world)) return;
  const Window* under = topmostAt(world, point);
  for (Window& window : world.windows) {
    if (window.owner != world.frontmost) continue;
    window.hover = &window == under ? std::optional(point) : std::nullopt;
  }
}

void clickByUser(World& world, Point point) {
  movePointer(world, point);
  const Window* window = reachesApplications(world) ? topmostAt(world, point) : nullptr;
  const Application* owner = window == nullptr ? nullptr : findApplication(world, window->owner);
  if (owner == nullptr) return;
  const WindowNumber number = window->number;
  const Pid pid = owner->pid;
  if (owner->policy != workspace::ActivationPolicy::prohibited) world.frontmost = pid;
  raiseWindow(world, number);
  click(world, pid, number, point, false);
}

void setHanging(World& world, Pid pid, bool hangs) {
  if (Application* application = findApplication(world, pid)) application->hangs = hangs;
}

}  // namespace

void happen(World& world, const Happening& happening) {
  switch (happening.kind) {
    case Happening::Kind::lock:
      world.session.locked = true;
      break;
    case Happening::Kind::unlock:
      world.session.locked.reset();
      break;
    case Happening::Kind::leaveConsole:
      world.session.onConsole = false;
      break;
    case Happening::Kind::returnToConsole:
      world.session.onConsole = true;
      break;
    case Happening::Kind::quit:
      quitApplication(world, happening.pid);
      break;
    case Happening::Kind::endProcess:
      world.processes.erase(happening.pid);
      break;
    case Happening::Kind::bringToFront:
      if (findApplication(world, happening.pid) != nullptr) bringToFront(world, happening.pid);
      break;
    case Happening::Kind::hang:
      setHanging(world, happening.pid, true);
      break;
    case Happening::Kind::recover:
      setHanging(world, happening.pid, false);
      break;
    case Happening::Kind::userKey:
      if (reachesApplications(world)) pressKey(world, happening.text);
      break;
    case Happening::Kind::userClick:
      clickByUser(world, happening.point);
      break;
    case Happening::Kind::userMove:
      movePointer(world, happening.point);
      break;
    case Happening::Kind::removeDisplays:
      world.displays.clear();
      break;
  }
}

}  // namespace simulator
