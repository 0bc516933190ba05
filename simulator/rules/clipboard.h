#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "simulator/rules/rule.h"

namespace simulator {

/// I9, of a client that uses the pasteboard: it ends as the client was told that it was, or with
/// what somebody else has put there since. Excepted are a copy that falls between two neighbouring
/// calls, and a restoring that the pasteboard refuses.
class ClipboardRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  void noteCount(std::int64_t count);
  void checkClear(Violations& violations);

  std::optional<std::vector<pasteboard::Item>> saved_;
  std::int64_t lastCount_ = 0;  // as it was at the client's latest call
  std::optional<std::int64_t> ownCount_;
  bool cleared_ = false;        // by the client
  bool knowsOfCopy_ = false;    // by somebody else, since then
  bool copiedBetween_ = false;  // unseen, before a neighbouring call
  bool restoringRefused_ = false;
  int clears_ = 0;
};

}  // namespace simulator
