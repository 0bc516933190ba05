#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <sys/types.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

/// What several probes ask the system for, and the private functions as driver declares them.
namespace probe {

/// Functions that are looked up; each is null when this system does not have it.
struct PrivateFunctions {
  void (*postToPid)(pid_t pid, CGEventRef event);
  void (*setField)(CGEventRef event, std::uint32_t field, std::int64_t value);
  void (*setWindowLocation)(CGEventRef event, double x, double y);
  std::int32_t (*postRecord)(void* process, std::uint8_t* record);
  std::int32_t (*processForPid)(pid_t pid, void* process);
  std::int16_t (*frontProcess)(void* process);
  std::int32_t (*pidOfProcess)(const void* process, pid_t* pid);
  std::int32_t (*windowOfElement)(AXUIElementRef element, std::uint32_t* window);

  /// Whether all are there.
  bool isComplete() const;
};
const PrivateFunctions& privateFunctions();

/// Why elements of other applications and their windows cannot be asked here: the permission for
/// Accessibility is not given, or a private function is missing. None when they can.
std::optional<std::string> missingForElements();

/// A process as the window server numbers it; none when it does not.
using SerialNumber = std::array<std::uint32_t, 2>;
std::optional<SerialNumber> serialNumber(pid_t pid);

/// The process in front; 0 when the system does not say.
pid_t frontPid();

/// Where the pointer is.
CGPoint pointer();

/// The frame of a window, y downwards, by the window list.
std::optional<CGRect> windowBounds(std::uint32_t window);

/// The place of a window among those on the screen, from the front; -1 when it is not on the
/// screen.
long long placeOnScreen(std::uint32_t window);

/// Whether the window list has it among the windows on the screen.
bool isOnScreen(std::uint32_t window);

void sleepMilliseconds(int milliseconds);

/// Runs the current run loop for so long.
void runLoop(double seconds);

}  // namespace probe
