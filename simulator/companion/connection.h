#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "base/datum.h"
#include "simulator/companion/descriptor.h"

namespace companion {

/// One process's socket: whole messages in, whole messages out, and never a wait.
class Connection {
 public:
  /// The largest message that a Mac takes, in bytes. Longer than any command line the host allows.
  static constexpr std::size_t messageLengthMax = 8U << 20U;

  /// `descriptor` is non-blocking. A longer message than `longest` is none.
  explicit Connection(Descriptor descriptor, std::size_t longest = messageLengthMax)
      : descriptor_(std::move(descriptor)), longest_(longest) {}

  int descriptor() const { return descriptor_.number(); }

  /// Takes in what has arrived, up to a bound. False at the end of the stream and after an error.
  bool receive();

  /// The next message that has arrived whole. Throws MalformedDatum for one that can never be.
  std::optional<driver::Datum> next();

  /// Sends as much as the socket takes now and keeps the rest for `flush`. False when the other end
  /// has gone.
  bool send(const driver::Datum& message);
  bool flush();
  bool hasOutput() const { return !output_.empty(); }

 private:
  Descriptor descriptor_;
  std::size_t longest_;
  std::string input_;
  std::string output_;
};

}  // namespace companion
