#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"
#include "simulator/rules/clipboard.h"
#include "simulator/rules/elements.h"
#include "simulator/rules/guard.h"
#include "simulator/rules/insert.h"
#include "simulator/rules/keys.h"
#include "simulator/rules/pace.h"
#include "simulator/rules/service.h"

namespace simulator {

/// What must hold of every run, whatever it is about. One object watches one client, from its first
/// call to its end; each broken rule adds a sentence that begins with the rule's number, as
/// docs/TESTING.md lists them.
class Rules {
 public:
  /// Both outlive this object.
  Rules(const Mac& mac, const Client& client);

  using Violations = std::vector<std::string>;

  /// Before the world answers a call, and after.
  /// `flow` tells the client's flows apart.
  void before(const platform::Call& call, std::size_t flow, Violations& violations);
  void after(const platform::Call& call, const Answer& answer, bool faulty, std::size_t flow,
             Violations& violations);

  /// Before the world is asked again for the answer of a call that was pending.
  void look();

  /// When the client has gone. Only the first call counts.
  void finish(Violations& violations);

 private:
  PostedSoFar postedSoFar(const platform::Call& call) const;
  void checkPost(const platform::Call& call, Violations& violations);
  void checkOperation(const platform::EventImage& event, Violations& violations);
  void checkUserUntouched(const platform::Call& call, Violations& violations);
  void checkStall(const platform::Call& call, const Answer& answer, Violations& violations);
  void checkScreenshot(const platform::Call& call, Violations& violations);
  void noteItem(const Answer& answer);
  void endRequest();
  void noteSession(const Answer& answer);
  void noteRecord(const platform::Call& call, const Answer& answer);
  void noteSerial(const platform::Call& call, const Answer& answer);
  void checkReply(Violations& violations) const;
  void checkLines(Violations& violations) const;
  void checkButtons(Violations& violations) const;
  void checkFocus(Violations& violations) const;

  bool inScope(WindowNumber window) const;
  std::string command() const;
  bool isInputCommand() const;

  const Mac& mac_;
  const Client& client_;
  bool finished_ = false;

  // The session and the service.
  bool checkedUnusable_ = false;  // as the last check found
  bool everUnusable_ = false;
  int operationsWhileUnusable_ = 0;  // since the last check
  int operationsAfterDeath_ = 0;
  bool livenessFailed_ = false;

  // Posting.
  platform::EventImage posted_;  // the event of the present call, when it is a post
  std::optional<std::int64_t> lastIdentity_;
  std::size_t postingFlow_ = 0;  // whose waits are watched
  PaceRules pace_;
  std::optional<Pid> postedTo_;
  std::map<std::uint32_t, int> pressed_;  // downs less ups, by the type of the down
  bool creationFailed_ = false;

  // Focus.
  std::map<Pid, int> given_;  // gives less attempts to take back
  std::set<Pid> sawInFront_;  // since it was given focus

  // The rest.
  ElementRules elements_;
  InsertRules insert_;
  GuardRules guard_;
  KeyRules keys_;
  ClipboardRules clipboard_;
  ServiceRules service_;
  std::map<Pid, int> timeouts_;
  bool outputRefused_ = false;
  bool fileReplaced_ = false;
  Point pointerBefore_;
  Pid frontBefore_ = 0;
  Pid toldInFront_ = 0;           // when the run last asked; 0 for none
  ElementId keyboardBefore_ = 0;  // the front application's focused window
};

}  // namespace simulator
