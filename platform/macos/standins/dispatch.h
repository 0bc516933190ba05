#pragma once

#include <cstddef>
#include <cstdint>

namespace standins {

/// Lets the main queue do what has been posted and what its sources have to tell.
void serveMainQueue();

/// Lets time pass, without the main queue being served.
void passNanoseconds(std::uint64_t nanoseconds);

/// Has this signal come once more.
void signalArrives(int number);

/// For how long the last wait for a semaphore has waited in vain.
std::uint64_t lastWaitNanoseconds();

/// How many sources there are. One goes when it is released, with its context.
std::size_t sources();

}  // namespace standins
