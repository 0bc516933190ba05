#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "simulator/rules/rule.h"

namespace simulator {

/// What must hold of every run of "lock-guard", whatever happens to it. It takes no notice of other
/// commands.
class GuardRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  /// A call of the lock: when it comes back, and with which status.
  struct LockCall {
    Microseconds due = 0;
    std::int32_t status = 0;
  };

  bool isGuard() const { return run_.command() == "lock-guard"; }
  double graceSeconds() const;
  bool hasGraceLeft() const;
  void checkMainFlow(const platform::Call& call, Violations& violations);
  void checkCallback(const platform::Call& call, Violations& violations);
  void checkVerdict(const platform::Call& call, Violations& violations);
  void checkLine(const std::string& line, Violations& violations);
  void checkEndingLine(const std::string& by, Violations& violations);
  bool tellsOfLock(bool relocked);
  void takeItem(const platform::WireItem& item);
  void noteWait(const platform::Call& call);

  std::optional<Microseconds> tapStarted_;  // when the tap was enabled first, and seen to work
  bool watches_ = false;                    // the first line has been tried to write
  bool reenableOwed_ = false;
  std::optional<tap::Event> event_;               // that the tap looks at, until its verdict
  std::optional<platform::Function> latestCall_;  // of the main flow
  Microseconds latestSince_ = 0;
  Microseconds waited_ = 0;        // by the guard's own choice, while the tap looks at the event
  std::set<std::size_t> writing_;  // the flows that have begun to write and are not done
  bool inputEnded_ = false;        // the agent has gone, or has closed its end
  bool canLock_ = false;           // the lock's entry has been found
  bool lockAsked_ = false;         // by the event that the tap looks at
  int locksBegun_ = 0;             // calls of it
  std::vector<LockCall> locks_;    // of these, answered now or later
  std::size_t locksReported_ = 0;  // of these, told by a line
  bool hasReturned_ = false;       // the user, before any such line
  int endings_ = 0;                // lines that say why the guard ends
  int usersEndings_ = 0;           // of these, by the user's return
  bool graceTaken_ = false;        // the user came back while grace lasted
};

}  // namespace simulator
