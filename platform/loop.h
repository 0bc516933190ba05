#pragma once

#include <cstdint>
#include <functional>

#include "platform/types.h"

/// Time, and the flows of a run: the main one, and those that are started beside it. What a flow
/// does between two waits no other flow of the run disturbs, but on a real machine two flows do run
/// at once: what they share is guarded by the functions below.
namespace loop {

/// Nanoseconds since the machine started, sleep excluded. Never goes back.
std::uint64_t uptimeNanoseconds();

/// Seconds since the beginning of 1970 by the user's clock, which may be set at any time.
double secondsSince1970();

/// Lets the calling flow sleep for the whole time given, in microseconds.
void sleepMicroseconds(std::uint32_t microseconds);

/// Starts `task` as a detached flow. It ends the process itself, or just ends. Its stack is as
/// large as the main flow's.
void startTask(std::function<void()> task);

/// Does `work`, then frees what the platform has set aside meanwhile for the calling flow: a flow
/// that goes on and on does its rounds so. What `work` throws is passed on. A call of the seam that
/// throws may leave what was set aside for it: whoever catches again and again does so in rounds.
void doRound(const std::function<void()>& work);

/// Lets the main flow do nothing but what comes to it: posted and scheduled work, signals and tap
/// events that have a handler. Never returns.
[[noreturn]] void park();

/// Holds the calling flow back for good. The others go on.
[[noreturn]] void suspend();

/// Has `work` done by the main flow, when it next waits in `park` or runs the application. In the
/// order of the calls. From any flow.
void postToMain(std::function<void()> work);

/// Has `work` done by the main flow `count` times, `microseconds` apart, the first time that long
/// from now. It is done late rather than not when the flow is busy.
void scheduleOnMain(std::uint32_t microseconds, std::int64_t count, std::function<void()> work);

/// Has `round` done by the main flow every so many microseconds, the first time that long from now,
/// for good. One that was missed is not made up for. Once in a run.
void goRounds(std::uint32_t microseconds, std::function<void()> round);

/// Waits until the main flow has come back from another round than the last call waited for. False
/// when it has not within so many microseconds. On one flow other than the main one.
bool awaitRound(std::uint32_t microseconds);

/// Counts signals: each wait takes one away. From any flow. Neither call allocates on a real
/// machine.
using Semaphore = platform::Handle<struct SemaphoreTag>;

/// One whose count is 0.
Semaphore makeSemaphore();

void signal(const Semaphore& semaphore);

/// Waits for a signal; with a time limit: false when none has come by then.
void wait(const Semaphore& semaphore);
bool waitWithin(const Semaphore& semaphore, std::uint32_t microseconds);

}  // namespace loop
