#include "input/input_report.h"

#include <cmath>
#include <optional>

#include "base/geometry.h"
#include "input/key_codes.h"
#include "input/target_window.h"
#include "main/globals.h"

namespace driver {

namespace {

using quartz::EventType;

// A hand on the desk makes a mouse tremble by a point; nobody means that.
constexpr double smallestMove = 2;  // points, both ways together

// Four reports a second say that the user is busy; more would only keep the reader busy.
constexpr double throttleSeconds = 0.25;

constexpr std::int64_t returnKey = 36;
constexpr std::int64_t keypadEnterKey = 76;
constexpr double millisecondsMax = 9e18;  // below the largest 64-bit number

bool hasType(const tap::Event& event, EventType type) {
  return event.type == static_cast<std::uint32_t>(type);
}

bool submits(const tap::Event& event) {
  return hasType(event, EventType::keyDown) &&
         (event.keyCode == returnKey || event.keyCode == keypadEnterKey);
}

}  // namespace

static_assert(watchedMask == 0x24014EA);

bool isDisabledNotice(const tap::Event& event) {
  return event.type == tap::disabledByTimeout || event.type == tap::disabledByUserInput;
}

bool isUsersInput(const tap::Event& event) {
  if (event.sourceUserData == ownEventTag) return false;
  if (!hasType(event, EventType::mouseMoved)) return true;
  return std::fabs(static_cast<double>(event.deltaX)) +
             std::fabs(static_cast<double>(event.deltaY)) >=
         smallestMove;
}

const char* inputKind(const tap::Event& event) {
  if (isKeyInput(event)) return "key";
  return hasType(event, EventType::scrollWheel) ? "scroll" : "pointer";
}

bool isKeyInput(const tap::Event& event) {
  return hasType(event, EventType::keyDown) || hasType(event, EventType::flagsChanged);
}

bool isOnWindowOf(platform::Pid pid, const tap::Event& event,
                  const std::vector<windowserver::Window>& windows) {
  for (const windowserver::Window& window : windows) {
    const std::optional<Rect> bounds = boundsOf(window);
    if (bounds && contains(*bounds, event.location)) return window.ownerPid == pid;
  }
  return false;
}

Promptness promptnessOf(const tap::Event& event, bool touchesTarget) {
  // Return sends a message in most applications, with shift it begins another line.
  if (submits(event) && !hasModifier(event.flags, quartz::Modifier::shift)) {
    return Promptness::submitted;
  }
  return touchesTarget ? Promptness::atOnce : Promptness::throttled;
}

bool isReportDue(double now, double lastReport) {
  // A clock that was set back meanwhile does not tell how much time has passed.
  return now - lastReport > throttleSeconds || now < lastReport;
}

std::int64_t wholeMilliseconds(double seconds) {
  const double milliseconds = seconds * 1000;
  // What is not a number fails too.
  if (!(std::fabs(milliseconds) < millisecondsMax)) return 0;
  return static_cast<std::int64_t>(milliseconds);
}

}  // namespace driver
