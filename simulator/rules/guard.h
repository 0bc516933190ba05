#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"

namespace simulator {

/// What must hold of every run of "lock-guard", whatever happens to it. It takes no notice of other
/// commands.
class GuardRules {
 public:
  /// Both outlive this object.
  GuardRules(const Mac& mac, const Client& client) : mac_(mac), client_(client) {}

  using Violations = std::vector<std::string>;

  void before(const platform::Call& call, std::size_t flow, Violations& violations);
  void after(const platform::Call& call, const Answer& answer, std::size_t flow);

  /// When the guard has gone.
  void finish(Violations& violations) const;

 private:
  bool isGuard() const;
  double graceSeconds() const;
  bool hasGraceLeft() const;
  void checkCallback(const platform::Call& call, Violations& violations);
  void checkVerdict(const platform::Call& call, Violations& violations);
  void checkLine(const std::string& line, Violations& violations);
  void checkEndingLine(const std::string& by, Violations& violations);
  void takeItem(const platform::WireItem& item);

  const Mac& mac_;
  const Client& client_;

  std::optional<Microseconds> tapStarted_;  // when the tap was enabled first
  bool watches_ = false;                    // the first line has been tried to write
  bool reenableOwed_ = false;
  std::optional<tap::Event> event_;  // that the tap looks at, until its verdict
  bool canLock_ = false;             // the lock's entry has been found
  int locks_ = 0;                    // calls of it
  int locksReported_ = 0;            // of these, told by a line
  std::int32_t lastLock_ = 0;        // its status
  int endings_ = 0;                  // lines that say why the guard ends
  int usersEndings_ = 0;             // of these, by the user's return
  bool graceTaken_ = false;          // the user came back while grace lasted
};

}  // namespace simulator
