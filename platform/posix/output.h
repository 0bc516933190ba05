#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// What both platforms do alike, with the calls every Unix has.
namespace posix {

/// Writes all bytes to an open descriptor, in one write where the system takes them whole. Waits
/// while a non-blocking descriptor is full. False when not all of it could be written.
bool writeAll(int descriptor, std::string_view bytes);

/// The same, but gives up when the reader of a pipe or a socket does not take the bytes in time.
/// Only the first few hundred bytes are sure to go in one write.
bool writeWithin(int descriptor, std::string_view bytes, std::uint32_t microseconds);

/// Writes what the descriptor takes without waiting, and gives how many bytes that were. Whatever
/// keeps it from taking more, a further write says.
std::size_t writeReady(int descriptor, std::string_view bytes);

}  // namespace posix
