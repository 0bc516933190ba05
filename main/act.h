#pragma once

#include <cstdint>
#include <mutex>

namespace driver {

/// What must not be cut in two by the end of the process, as far as it can be helped: one event
/// with the pause after it, focus that is given or taken back. It is under way as long as the
/// object lives.
class Act {
 public:
  /// Begins what the process must not do once it is ending: then the flow is held back for good.
  Act();

  /// Begins what gives something back, which an ending process does too. The caller holds
  /// `globals().mutex` and takes, under the same lock, what is to be given back.
  explicit Act(const std::lock_guard<std::mutex>& held);

  Act(const Act&) = delete;
  Act& operator=(const Act&) = delete;
  ~Act();
};

/// How long a process that must end may still take for what is under way and for its last line.
inline constexpr std::uint32_t endingMicroseconds = 250'000;

/// Waits until no act is under way, `endingMicroseconds` at most.
void awaitActs();

}  // namespace driver
