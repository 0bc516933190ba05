#pragma once

#include <cstdint>
#include <string>

/// Power management.
namespace power {

struct Assertion {
  std::int32_t status = 0;
  std::uint32_t id = 0;
};

/// Keeps the display from sleeping while the user is idle, until the process ends. `name` is what
/// the system shows for it.
Assertion preventDisplaySleep(const std::string& name);

}  // namespace power
