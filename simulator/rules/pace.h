#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/call.h"

namespace simulator {

/// What a run has posted so far, as far as its waits depend on it.
struct PostedSoFar {
  const platform::EventImage* latest = nullptr;  // in this run or request; null for none
  bool again = false;              // the present call posts the latest event once more
  bool mayHurryFocusBack = false;  // taking focus back is none of this rule's: it may be at once
};

/// The waits that posting a pointer event owes, in microseconds: that of every post, and that of
/// its step in a click. Between two clicks 80 ms pass, which the next press shows.
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
class PaceRules {
 public:
  using Violations = std::vector<std::string>;

  /// Before the world answers a call of the flow that posts.
  void before(const platform::Call& call, const PostedSoFar& posted, Violations& violations);

  /// These waits, in microseconds, must come next.
  void owe(std::vector<std::uint32_t> waits) { owed_ = std::move(waits); }

  /// The latest wait of this run or request, in microseconds; 0 for none.
  std::uint32_t lastSleep() const { return lastSleep_; }

  /// A request of a service has been answered: the next one's waits are its own.
  void endRequest() { lastSleep_ = 0; }

  /// When the client has gone. An interrupted one owes no wait but that of a post or a record.
  void finish(bool isInterrupted, Violations& violations) const;

 private:
  void checkPauseBefore(const platform::Call& call, const PostedSoFar& posted,
                        Violations& violations) const;

  std::vector<std::uint32_t> owed_;
  std::uint32_t lastSleep_ = 0;
  bool lastWasPrivatePost_ = false;
};

}  // namespace simulator
