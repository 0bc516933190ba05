#pragma once

#include <cstddef>
#include <cstdint>

namespace standins {

/// Lets the main queue do what has been posted and what its sources have to tell.
void serveMainQueue();

/// Lets time pass, without the main queue being served.
void passNanoseconds(std::uint64_t nanoseconds);

/// The time by Dispatch's clock, which only passes when it is told to.
std::uint64_t now();

/// Has this signal come once more.
void signalArrives(int number);

/// How many sources there are. One goes when it is released, with its context.
std::size_t sources();

}  // namespace standins
