#pragma once

#include <optional>

#include "simulator/rules/rule.h"

namespace simulator {

/// What state the Mac must be in while a guard works and as it goes, at every instant. The Mac is
/// exposed when it is unlocked, on console, and a screen has no cover or no tap watches the user.
class GuardStateRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void beforeTimePasses(Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  bool isOwed() const;
  bool isUnlocked() const;
  bool isCovered() const;
  bool knowsScreens() const;
  bool isWatched() const;
  Microseconds coveredUntil() const;
  void checkClosing(Violations& violations) const;
  void checkHeldInput(Violations& violations);
  void checkExposure(Violations& violations);
  void noteLock();

  std::optional<Microseconds> began_;  // when the first line was tried to write
  bool over_ = false;               // grace has ended it, it has locked, or said that it could not
  bool lockAsked_ = false;          // and the system has accepted it
  std::optional<ComingLock> lock_;  // the latest that was to show, by anybody
  Microseconds lockAnswered_ = 0;   // by when the latest lock is answered, or given up
  Microseconds answered_ = 0;       // when the system answers the latest question about the tap
  std::optional<Microseconds> bareSince_;
  std::optional<Microseconds> unwatchedSince_;
  bool misled_ = false;  // about the screens that there are
  bool bareTold_ = false;
  bool unwatchedTold_ = false;
  bool heldTold_ = false;
};

}  // namespace simulator
