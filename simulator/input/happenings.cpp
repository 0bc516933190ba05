#include "simulator/input/happenings.h"

#include "simulator/input/user_input.h"
#include "simulator/world/pasteboard.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

void setHanging(World& world, Pid pid, bool hangs) {
  if (Application* application = findApplication(world, pid)) application->hangs = hangs;
}

void connectDisplay(World& world, const Display& display) {
  for (Display& each : world.displays) {
    if (each.id != display.id) continue;
    each = display;
    return;
  }
  world.displays.push_back(display);
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
    case Happening::Kind::userClick:
    case Happening::Kind::userMove:
    case Happening::Kind::userPress:
    case Happening::Kind::userRelease:
    case Happening::Kind::userScroll:
    case Happening::Kind::userDrag:
      for (const InputEvent& input : inputOf(world, happening)) takeInput(world, input);
      break;
    case Happening::Kind::userCopy:
      copyText(world.pasteboard, happening.text);
      break;
    case Happening::Kind::removeDisplays:
      world.displays.clear();
      break;
    case Happening::Kind::withdrawRecording:
      world.screenRecordingAllowed = false;
      break;
    case Happening::Kind::connectDisplay:
      connectDisplay(world, happening.display);
      break;
    case Happening::Kind::disconnectDisplay:
      std::erase_if(world.displays, [&](const Display& each) {
        return each.id == static_cast<std::uint32_t>(happening.number);
      });
      break;
    case Happening::Kind::disableTaps:
    case Happening::Kind::signalProcesses:
    case Happening::Kind::input:
    case Happening::Kind::closeInput:
    case Happening::Kind::closeOutput:
    case Happening::Kind::stallOutput:
    case Happening::Kind::resumeOutput:
    case Happening::Kind::requestTermination:
    case Happening::Kind::endApplicationLoop:
    case Happening::Kind::stopSharing:
      break;  // of the processes, not of the world
  }
}

}  // namespace simulator
