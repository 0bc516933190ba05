#include "support/posting.h"

#include "support/system.h"

namespace probe {

namespace {

constexpr std::uint32_t eventNumberField = 0;
constexpr std::uint32_t clickStateField = 1;
constexpr std::uint32_t buttonField = 3;
constexpr std::uint32_t subtypeField = 7;
constexpr std::uint32_t processField = 40;
constexpr std::uint32_t windowField = 51;
constexpr std::uint32_t groupField = 58;
constexpr std::uint32_t underField = 91;
constexpr std::uint32_t takingField = 92;
constexpr std::int64_t group = 123'456'789;

void setFields(CGEventRef event, const PointerTarget& target, const Form& form) {
  const auto set = privateFunctions().setField;
  set(event, eventNumberField, form.number);
  set(event, clickStateField, form.clickState);
  set(event, buttonField, 0);
  set(event, subtypeField, form.subtype);
  set(event, processField, target.pid);
  if (form.targetsWindow) set(event, windowField, target.window);
  if (form.setsGroup) set(event, groupField, group);
  if (!form.namesUnder) return;
  set(event, underField, target.window);
  set(event, takingField, target.window);
}

}  // namespace

void postPointer(const PointerTarget& target, CGEventType type, const Form& form) {
  CGEventSourceRef source = CGEventSourceCreate(kCGEventSourceStateHIDSystemState);
  CGEventRef event = CGEventCreateMouseEvent(source, type, target.global, kCGMouseButtonLeft);
  CGEventSetFlags(event, 0);
  setFields(event, target, form);
  const CGPoint point = form.pointIsGlobal ? target.global : target.inWindow;
  privateFunctions().setWindowLocation(event, point.x, point.y);
  if (form.privately) privateFunctions().postToPid(target.pid, event);
  if (form.publicly) CGEventPostToPid(target.pid, event);
  CFRelease(event);
  if (source != nullptr) CFRelease(source);
}

void postClick(const PointerTarget& target, const Form& form) {
  constexpr int pressMilliseconds = 13;
  postPointer(target, kCGEventLeftMouseDown, form);
  sleepMilliseconds(pressMilliseconds);
  postPointer(target, kCGEventLeftMouseUp, form);
  sleepMilliseconds(pressMilliseconds);
}

void postPriming(const PointerTarget& target, const Form& form) {
  constexpr CGPoint offScreen{-1, -1};
  constexpr int moveMilliseconds = 27;
  constexpr int releaseMilliseconds = 112;
  PointerTarget outside = target;
  outside.global = outside.inWindow = offScreen;
  Form move = form;
  move.clickState = 0;
  move.number = 2;
  Form press = form;
  press.number = 1;
  Form release = form;
  release.number = 2;
  postPointer(outside, kCGEventMouseMoved, move);
  sleepMilliseconds(moveMilliseconds);
  postPointer(outside, kCGEventLeftMouseDown, press);
  sleepMilliseconds(moveMilliseconds);
  postPointer(outside, kCGEventLeftMouseUp, release);
  sleepMilliseconds(releaseMilliseconds);
  postPointer(target, kCGEventMouseMoved, move);
  sleepMilliseconds(moveMilliseconds);
}

}  // namespace probe
