#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"
#include "simulator/rules/replies.h"

/// What all rules have in common.
namespace simulator {

/// Broken rules: one sentence each, which begins with the rule's number as docs/TESTING.md has it.
using Violations = std::vector<std::string>;

/// What is known of one run, for all of its rules. What a call tells is known after all rules have
/// seen its answer.
struct WatchedRun {
  /// Both outlive this object.
  WatchedRun(const Mac& itsMac, const Client& itsClient) : mac(itsMac), client(itsClient) {}

  const Mac& mac;
  const Client& client;

  bool sessionUnusable = false;  // as the last check of the session found
  bool everUnusable = false;
  bool livenessFailed = false;  // the service was found gone
  bool interrupted = false;     // the Mac has told the run that it must end
  bool creationFailed = false;  // an event of the pointer could not be made
  bool outputRefused = false;   // nobody took what was written
  bool fileReplaced = false;

  // Of a service these are about the request that it is at.
  platform::EventImage latestEvent;  // that was posted; during a post the present one
  std::optional<std::int64_t>
      latestIdentity;           // of the latest post operation; none before the first
  std::uint32_t lastSleep = 0;  // microseconds; 0: there was none

  std::vector<std::uint32_t> owedWaits;  // in microseconds; these must come next, in this order

  /// At the end: what the run says as its one reply. None of a run that lives on after its first
  /// line, of one that was killed, and of one whose reply nobody took.
  std::optional<ReplyFacts> reply;

  /// The command's name; empty for a run without one.
  std::string_view command() const {
    return client.arguments.size() > 1 ? std::string_view(client.arguments[1]) : "";
  }

  /// A capture service: one request of it is what to others is a run, as far as pace and targets
  /// go.
  bool isService() const { return command() == "capture-service"; }

  /// It presses keys, types or pastes.
  bool pressesKeys() const;

  /// The call ends a service's request: the service takes the right to write its line.
  bool endsRequest(const platform::Call& call) const;
};

/// A call of a run, as its rules see it.
struct ObservedCall {
  const platform::Call& call;
  std::size_t flow = 0;  // tells the client's flows apart; 0 is the first
  bool faulty = false;   // after it: a fault has answered
};

/// What must hold of every run in one respect. One object watches one run from its first call to
/// its end. Each function does nothing unless a rule has a use for it.
class Rule {
 public:
  /// The run outlives this object.
  explicit Rule(WatchedRun& run) : run_(run) {}
  virtual ~Rule() = default;
  Rule(const Rule&) = delete;
  Rule& operator=(const Rule&) = delete;

  /// Before the world is asked for an answer, also when it is asked again for that of a call that
  /// was pending.
  virtual void look() {}

  /// Before the world answers a call, and after.
  virtual void before(const ObservedCall& /*seen*/, Violations& /*violations*/) {}
  virtual void after(const ObservedCall& /*seen*/, const Answer& /*answer*/,
                     Violations& /*violations*/) {}

  /// Before the clock moves on: at this instant the Mac has come to rest.
  virtual void beforeTimePasses(Violations& /*violations*/) {}

  /// When the client has gone, once. It may have been killed: `Client::exited` tells.
  virtual void atEnd(Violations& /*violations*/) {}

 protected:
  WatchedRun& run_;
};

/// What the driver marks its own events with. Written out once more here, not taken from the
/// driver: a rule must not follow what it watches.
inline constexpr std::int64_t ownEventTag = 0x5A545256;

/// Whether the call posts an event, by either route.
bool isPost(platform::Function function);

/// Whether the call performs an action of an element, or writes one of its attributes: the two that
/// enable an application's tree do not count.
bool actsOnElement(const platform::Call& call);

/// Whether the call reads this attribute of an element, by itself or with others.
bool readsAttribute(const platform::Call& call, std::string_view name);

/// Whether the attribute is one of the two that enable an application's tree.
bool isEnablingAttribute(std::string_view name);

}  // namespace simulator
