#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/event_tap.h"
#include "platform/quartz.h"
#include "platform/types.h"
#include "platform/window_server.h"

/// What the input watcher makes of one event, without asking anybody.
namespace driver {

/// What the user's input consists of, the pointer's movement first.
inline constexpr std::array<quartz::EventType, 9> watchedTypes = {
    quartz::EventType::mouseMoved,       quartz::EventType::leftMouseDown,
    quartz::EventType::rightMouseDown,   quartz::EventType::otherMouseDown,
    quartz::EventType::leftMouseDragged, quartz::EventType::rightMouseDragged,
    quartz::EventType::scrollWheel,      quartz::EventType::keyDown,
    quartz::EventType::flagsChanged};

/// The same as a tap's mask.
inline constexpr std::uint64_t watchedMask = [] {
  std::uint64_t mask = 0;
  for (const quartz::EventType type : watchedTypes) mask |= tap::maskOf(type);
  return mask;
}();

/// How often a tap is looked after, and how long the notice that the system has disabled one may be
/// on its way, in microseconds.
inline constexpr std::uint32_t betweenLooks = 1'000'000;
inline constexpr std::uint32_t noticePatience = 100'000;

/// True when the system tells that it has disabled the tap.
bool isDisabledNotice(const tap::Event& event);

/// False for the tool's own input, and for a pointer that only trembles.
bool isUsersInput(const tap::Event& event);

/// The kind of input as reports have it: "key", "pointer" or "scroll".
const char* inputKind(const tap::Event& event);

/// True for a key that goes down, or a modifier that changes.
bool isKeyInput(const tap::Event& event);

/// True when the first of the windows, front to back, at the place of the event is the process's.
/// Windows without bounds are passed over.
bool isOnWindowOf(platform::Pid pid, const tap::Event& event,
                  const std::vector<windowserver::Window>& windows);

enum class Promptness {
  throttled,  // reported unless something has just been reported
  atOnce,
  submitted,  // at once, with the application that a message was submitted to
};

/// How an input is to be reported that touches the watched process, or does not.
Promptness promptnessOf(const tap::Event& event, bool touchesTarget);

/// Whether a throttled report is due, by two times in seconds since the beginning of 1970.
bool isReportDue(double now, double lastReport);

/// Seconds as whole milliseconds, cut off; 0 when there is no such number.
std::int64_t wholeMilliseconds(double seconds);

}  // namespace driver
