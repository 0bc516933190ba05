#include "support/posting.h"

#include "support/system.h"

namespace probe {

namespace {

constexpr std::uint32_t mouseEventNumberField = 0;
constexpr std::uint32_t clickStateField = 1;
constexpr std::uint32_t buttonNumberField = 3;
constexpr std::uint32_t mouseSubtypeField = 7;
constexpr std::uint32_t targetProcessField = 40;
constexpr std::uint32_t targetWindowField = 51;
constexpr std::uint32_t clickGroupField = 58;
constexpr std::uint32_t windowUnderPointerField = 91;
constexpr std::uint32_t windowThatCanHandleField = 92;
constexpr std::int64_t group = 123'456'789;

void setPublicly(CGEventRef event, std::uint32_t field, std::int64_t value) {
  CGEventSetIntegerValueField(event, static_cast<CGEventField>(field), value);
}

/// Directs the event at the target.
void address(CGEventRef event, const PointerTarget& target, const Form& form) {
  const auto set = form.setsPublicly ? setPublicly : privateFunctions().setField;
  set(event, targetProcessField, target.pid);
  if (form.targetsWindow) set(event, targetWindowField, target.window);
  if (form.setsGroup) set(event, clickGroupField, group);
  if (!form.namesUnder) return;
  set(event, windowUnderPointerField, target.window);
  set(event, windowThatCanHandleField, target.window);
}

void setFields(CGEventRef event, const PointerTarget& target, const Form& form) {
  const auto set = privateFunctions().setField;
  set(event, mouseEventNumberField, form.number);
  set(event, clickStateField, form.clickState);
  set(event, buttonNumberField, 0);
  set(event, mouseSubtypeField, form.subtype);
  address(event, target, form);
}

void postFinished(CGEventRef event, const PointerTarget& target, const Form& form) {
  const CGPoint point = form.pointIsGlobal ? target.global : target.inWindow;
  privateFunctions().setWindowLocation(event, point.x, point.y);
  if (form.privately) privateFunctions().postToPid(target.pid, event);
  if (form.publicly) CGEventPostToPid(target.pid, event);
}

}  // namespace

void postPointer(const PointerTarget& target, CGEventType type, const Form& form) {
  CGEventSourceRef source = CGEventSourceCreate(kCGEventSourceStateHIDSystemState);
  CGEventRef event = CGEventCreateMouseEvent(source, type, target.global, kCGMouseButtonLeft);
  CGEventSetFlags(event, 0);
  setFields(event, target, form);
  postFinished(event, target, form);
  CFRelease(event);
  if (source != nullptr) CFRelease(source);
}

void postScroll(const PointerTarget& target, const Form& form) {
  constexpr int lines = -3;
  CGEventRef event =
      CGEventCreateScrollWheelEvent2(nullptr, kCGScrollEventUnitLine, 2, lines, 0, 0);
  CGEventSetFlags(event, 0);
  CGEventSetLocation(event, target.global);
  setFields(event, target, form);
  postFinished(event, target, form);
  CFRelease(event);
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
