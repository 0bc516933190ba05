#include "simulator/mac/recording_question.h"

#include <algorithm>
#include <utility>

#include "simulator/world/elements.h"
#include "simulator/world/reactions.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

constexpr const char* bundleOfQuestions = "com.apple.UserNotificationCenter";
constexpr Pid firstPid = 300;
constexpr std::int64_t alertLayer = 8;
constexpr Size alertSize{300, 180};

bool isTaken(const World& world, Pid pid) {
  const bool isApplication = std::any_of(world.applications.begin(), world.applications.end(),
                                         [&](const Application& each) { return each.pid == pid; });
  return isApplication || world.processes.contains(pid);
}

Pid freePid(const World& world) {
  Pid pid = firstPid;
  while (isTaken(world, pid)) ++pid;
  return pid;
}

/// In the middle of the main display.
Rect alertFrame(const World& world) {
  const Rect display = world.displays.empty() ? Rect{} : world.displays.front().frame;
  return {display.x + (display.width - alertSize.width) / 2,
          display.y + (display.height - alertSize.height) / 2, alertSize.width, alertSize.height};
}

void addAnswer(Application& asking, const Window& alert, const std::string& title, double y) {
  Element& button = addElement(asking, alert.element, alert.number,
                               Rect{alert.frame.x + 20, alert.frame.y + y, 260, 28}, "AXButton");
  button.attributes["AXTitle"] = title;
  button.actions = {"AXPress"};
  button.onClick = {{reactions::quit}};
}

void fillAlert(Application& asking, Window& alert) {
  Element& element = addElement(asking, 0, alert.number, alert.frame, "AXWindow");
  element.attributes["AXSubrole"] = std::string("AXSystemDialog");
  alert.element = asking.focusedWindow = element.id;
  asking.windows = {element.id};
  const Rect place{alert.frame.x + 20, alert.frame.y + 20, 260, 60};
  addElement(asking, alert.element, alert.number, place, "AXStaticText").attributes["AXValue"] =
      std::string("A program would like to go on recording this screen.");
  addAnswer(asking, alert, "Open System Settings", 96);
  addAnswer(asking, alert, "Allow For One Month", 132);
}

void ask(Mac& mac) {
  World& world = mac.world;
  Application asking;
  asking.pid = freePid(world);
  asking.name = "UserNotificationCenter";
  asking.bundleIdentifier = bundleOfQuestions;
  asking.bundlePath = "/System/Library/CoreServices/UserNotificationCenter.app";
  asking.policy = workspace::ActivationPolicy::accessory;
  Window alert;
  alert.number = ++world.lastWindow;
  alert.owner = asking.pid;
  alert.frame = alertFrame(world);
  alert.layer = alertLayer;
  fillAlert(asking, alert);
  enter(mac, {.kind = JournalEntry::Kind::screen,
              .target = asking.pid,
              .window = alert.number,
              .what = "asks whether it may be recorded"});
  world.windows.insert(world.windows.begin(), std::move(alert));
  world.applications.push_back(std::move(asking));
  bringToFront(world, world.applications.back().pid);
}

}  // namespace

bool awaitsRecordingAnswer(const World& world) {
  return std::any_of(world.applications.begin(), world.applications.end(),
                     [](const Application& each) {
                       return each.running && each.bundleIdentifier == bundleOfQuestions;
                     });
}

bool allowsCapture(Mac& mac) {
  if (!mac.world.screenRecordingAllowed) return false;
  if (std::exchange(mac.world.system.asksForRecording, false)) ask(mac);
  return !awaitsRecordingAnswer(mac.world);
}

}  // namespace simulator
