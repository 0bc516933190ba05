#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "base/geometry.h"

namespace platform {

using driver::Point;
using driver::Rect;
using driver::Size;

/// A process id, 32-bit signed as the platform has it.
using Pid = std::int32_t;

/// A window-server window number; 0 names no window.
using WindowNumber = std::uint32_t;

/// Raw bytes: file contents, pixels.
using Bytes = std::string;

/// The status with which the platform says "done".
inline constexpr std::int32_t statusSuccess = 0;

/// A process serial number: two words, zeroed before the platform fills it.
struct SerialNumber {
  std::uint32_t high = 0;
  std::uint32_t low = 0;
};

/// An error the platform reported by other means than a status. `what` is its own description, one
/// line of UTF-8, shown to callers unchanged.
class PlatformError : public std::exception {
 public:
  explicit PlatformError(std::string description) : description_(std::move(description)) {}
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string description_;
};

/// An opaque, shared reference to a platform object. Copies share it; the last one frees memory and
/// nothing else. Tag keeps the kinds apart.
template <class Tag>
class Handle {
 public:
  /// Takes over one reference. `object` is not null.
  explicit Handle(std::shared_ptr<void> object) : object_(std::move(object)) {}

  /// The platform's own pointer, borrowed.
  void* get() const { return object_.get(); }

 private:
  std::shared_ptr<void> object_;
};

}  // namespace platform
