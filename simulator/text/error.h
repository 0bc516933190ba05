#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace simulator {

/// A line that cannot be read. `what` is "line N: cause".
class WorldError : public std::runtime_error {
 public:
  WorldError(std::size_t line, const std::string& cause)
      : std::runtime_error("line " + std::to_string(line) + ": " + cause) {}
};

}  // namespace simulator
