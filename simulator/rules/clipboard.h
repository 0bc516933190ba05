#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "simulator/rules/rule.h"

namespace simulator {

/// I9, of a client that uses the pasteboard: it ends as the client was told that it was, or with
/// what somebody else has put there since. Nothing is pasted once somebody else has it, as far as a
/// look right before tells. What cannot be helped must be told: a copy that comes between a look
/// and the clearing that follows it in the same flow at once, whatever another flow does meanwhile,
/// and a restoring that the pasteboard refuses.
class ClipboardRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  using Items = std::vector<pasteboard::Item>;

  bool isOwner() const;
  void checkClear(std::size_t flow, Violations& violations);
  void checkOverwriting(std::size_t flow, Violations& violations);
  bool pastes(const platform::Call& call) const;
  void checkPaste(Violations& violations) const;
  void checkReply(const ReplyFacts& reply, Violations& violations) const;

  std::map<std::size_t, std::uint32_t> lastSleep_;  // of each flow, in microseconds
  std::set<std::size_t> lookedJustNow_;             // flows whose latest call asked for the count
  std::optional<Items> saved_;    // what the client was told before its first clearing
  std::int64_t savedChange_ = 0;  // the change count that it was told of
  std::int64_t toldChange_ = 0;   // the latest count that the client was told
  std::int64_t ownChange_ = 0;    // the count that its latest clearing made
  int clears_ = 0;                // by the client
  bool knowsOwner_ = false;       // it asked since it wrote, waited or read of an application
  bool copyLost_ = false;         // in an instant that it could not see
  bool filesRefused_ = false;
  bool restoringRefused_ = false;
};

}  // namespace simulator
