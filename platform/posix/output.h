#pragma once

#include <string_view>

/// What both platforms do alike, with the calls every Unix has.
namespace posix {

/// Writes all bytes to an open descriptor, in one write where the system takes them whole. Waits
/// while a non-blocking descriptor is full. False when not all of it could be written.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace posix
