#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
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

/// What can be read from a descriptor now, at least one byte; waits for it. Empty at the end of
/// input, or when it cannot be read.
std::string readSome(int descriptor);

/// All that can be read from a descriptor, until its end or until it cannot be read.
std::string readToEnd(int descriptor);

/// Gives input in lines or as it comes. What one of the two has read too much, the next call gives.
/// For one thread.
class Input {
 public:
  /// Reads from a descriptor, which stays the caller's.
  explicit Input(int descriptor);

  /// Reads by `readSome`, which waits for at least one byte, and gives none at the end.
  explicit Input(std::function<std::string()> readSome);

  /// The next line without its line feed, or what is left after the last one; waits for it. None at
  /// the end of input, or when it cannot be read. Bytes as they came.
  std::optional<std::string> readLine();

  /// What has arrived, at least one byte; waits for it. Empty at the end of input, or when it
  /// cannot be read.
  std::string readAvailable();

 private:
  std::optional<std::string> takeRest();

  std::function<std::string()> readSome_;
  std::string pending_;
  std::size_t searched_ = 0;  // so much of what is pending holds no line feed
};

}  // namespace posix
