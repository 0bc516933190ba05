#pragma once

#include <stdexcept>
#include <string>

namespace companion {

/// Why a command cannot do what it was asked. `what` is the sentence for the caller.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Why a command's words make no sense: the caller is told the command's usage.
struct UsageError {};

/// A failure with the system's own words for `errno` as it is now.
Failure systemFailure(const std::string& whatFailed);

/// The failure as one line of JSON, without a line feed.
std::string failureLine(const std::string& message);

}  // namespace companion
