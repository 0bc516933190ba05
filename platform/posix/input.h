#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace posix {

/// What can be read from a descriptor now, at least one byte; waits for it. Empty at the end of
/// input, or when it cannot be read.
std::string readSome(int descriptor);

/// Reads from a descriptor, which stays the caller's, in lines or as it comes. What one of the two
/// has read too much, the next call gives. For one thread.
class Input {
 public:
  explicit Input(int descriptor) : descriptor_(descriptor) {}

  /// The next line without its line feed, or what is left after the last one; waits for it. None at
  /// the end of input, or when it cannot be read. Bytes as they came.
  std::optional<std::string> readLine();

  /// What has arrived, at least one byte; waits for it. Empty at the end of input, or when it
  /// cannot be read.
  std::string readAvailable();

 private:
  std::optional<std::string> takeRest();

  int descriptor_;
  std::string pending_;
  std::size_t searched_ = 0;  // so much of what is pending holds no line feed
};

}  // namespace posix
