#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "simulator/rules/rule.h"

namespace simulator {

/// The waits that posting an event owes, in microseconds: that of every post, and that of its step
/// in a click. Between two clicks 80 ms pass, which the next press shows.
std::vector<std::uint32_t> waitsAfter(const platform::EventImage& event);

/// The wait that every post owes, in microseconds.
inline constexpr std::uint32_t waitAfterPost = 12'000;

/// The wait that a record that gives focus or takes it owes, in microseconds.
inline constexpr std::uint32_t waitAfterFocusRecord = 40'000;

/// The waits before focus is taken back after a click, and after a scroll or a move; in
/// microseconds.
inline constexpr std::uint32_t waitAfterClick = 100'000;
inline constexpr std::uint32_t waitAfterMotion = 50'000;

/// I5: the waits that are due come when they are due, and no others are made.
class PaceRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  void checkOwed(const platform::Call& call, std::uint32_t slept, Violations& violations);
  void checkPauseBefore(const platform::Call& call, Violations& violations) const;
  bool mayHurryFocusBack() const;

  std::size_t postingFlow_ = 0;  // whose waits are watched
  bool lastWasPrivatePost_ = false;
};

}  // namespace simulator
