#pragma once

#include <cstdint>
#include <functional>

/// Time, and the two flows of a run: the main one and a detached task.
namespace loop {

/// Nanoseconds since the machine started, sleep excluded. Never goes back.
std::uint64_t uptimeNanoseconds();

/// Lets the calling flow sleep for the whole time given, in microseconds.
void sleepMicroseconds(std::uint32_t microseconds);

/// Starts `task` as a detached flow. It ends the process itself.
void startTask(std::function<void()> task);

/// Parks the main flow for good in the main dispatch loop.
[[noreturn]] void park();

}  // namespace loop
