#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"

namespace simulator {

/// I9, of a client that uses the pasteboard: it ends as the client was told that it was, or with
/// what somebody else has put there since. Excepted are a copy that falls between two neighbouring
/// calls, and a restoring that the pasteboard refuses.
class ClipboardRules {
 public:
  /// Both outlive this object.
  ClipboardRules(const Mac& mac, const Client& client) : mac_(mac), client_(client) {}

  using Violations = std::vector<std::string>;

  /// Before the world answers a call; `lastSleep` is the latest wait, in microseconds.
  void before(const platform::Call& call, std::uint32_t lastSleep, Violations& violations);

  /// After it.
  void after(const platform::Call& call, const Answer& answer);

  /// When the client has ended by itself.
  void finish(Violations& violations) const;

 private:
  void noteCount(std::int64_t count);
  void checkClear(std::uint32_t lastSleep, Violations& violations);

  const Mac& mac_;
  const Client& client_;
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
