#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/call.h"
#include "simulator/faults.h"
#include "simulator/mac/mac.h"
#include "simulator/rules/rules.h"
#include "simulator/trace.h"
#include "simulator/world/random.h"

namespace simulator {

/// A fault that waits for its calls.
struct ArmedFault {
  Fault fault;
  std::size_t counted = 0;  // of the calls that it counts

  /// It has struck, and strikes no more.
  bool isSpent() const { return !fault.onwards && counted >= fault.occurrence; }
};

/// The simulated Mac with its only gate. It never waits: whoever drives it advances its clock.
class Desktop {
 public:
  explicit Desktop(World world, const std::vector<Fault>& faults = {});
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  /// A process joins. Its process id lies above any of the host's. The result names it from now on.
  std::size_t join(std::vector<std::string> arguments,
                   std::map<std::string, std::string> environment);

  /// The process has gone. Idempotent.
  void leave(std::size_t client);

  /// Drops what is kept of a client that has left and makes no more calls. A Mac that serves for
  /// days meets many.
  void forget(std::size_t client);

  /// Answers one call: asks for a fault, lets the world answer, writes the trace, checks the rules.
  /// The answer is due `delay` after now. Throws MalformedDatum for a call that makes no sense.
  /// `flow` tells the process's flows apart; 0 is the first.
  Answer handle(std::size_t client, const platform::Call& call, std::size_t flow = 0);

  /// Asks again for the answer of a call that was pending, made at `since`.
  Answer retry(std::size_t client, const platform::Call& call, Microseconds since,
               std::size_t flow = 0);

  /// Moves the clock to `time`; what is scripted up to then happens in passing, in order.
  void advanceTo(Microseconds time);

  /// Something happens now that no client asked for.
  void happen(const Happening& happening);

  /// A further fault, whose calls are counted from now.
  void addFault(const Fault& fault);

  const std::vector<ArmedFault>& faults() const { return faults_; }

  /// How many lines of the world's script have happened for the last time.
  std::size_t scripted() const { return scripted_; }

  /// By which calls take time, where the world has a seed.
  const std::optional<Random>& chance() const { return chance_; }

  /// When something happens next that no client causes: by the script, or by the Mac itself.
  std::optional<Microseconds> nextOwn() const;

  /// When a write or a paste has its effect next that was accepted before.
  std::optional<Microseconds> nextLanding() const;

  /// The same, for a run in which nobody waits for a time: what happens again and again for ever
  /// moves time for `quietMax` at most after the last thing that does not.
  std::optional<Microseconds> nextOwnInRun() const;
  static constexpr Microseconds quietMax = 10'000'000;

  Mac& mac() { return mac_; }
  const Mac& mac() const { return mac_; }
  /// A client that was not forgotten.
  const Client& client(std::size_t client) const { return *mac_.clients[client]; }
  /// The process id of a client, also when it was forgotten.
  static Pid pidOf(std::size_t client);
  /// The latest calls, 100,000 at least, unless they are not kept.
  const Trace& trace() const { return trace_; }
  /// From now on calls are not kept.
  void keepNoTrace() { keepsTrace_ = false; }

  /// The invariants broken so far, one sentence each.
  const std::vector<std::string>& violations() const { return violations_; }

 private:
  void resume();
  const Fault* strike(platform::Function function);
  Answer conclude(std::size_t client, const platform::Call& call, Answer answer, bool faulty,
                  std::size_t flow);
  std::optional<Microseconds> nextScripted() const;
  std::optional<Microseconds> nextReaction() const;
  bool hasOnlyRecurring() const;
  void happenByScript();
  void letReactionTakePlace();
  std::optional<Microseconds> nextLock() const;
  void passTo(Microseconds time);
  void tellOfJoining(const Client& client);
  void tellOfEnd(const Client& client);
  void tellOfStrike(const Fault& fault, platform::Function function);
  void tellOfViolations(Pid pid);
  void showLock();

  Mac mac_;
  std::vector<std::unique_ptr<Rules>> rules_;  // by client
  std::vector<ArmedFault> faults_;
  std::size_t scripted_ = 0;  // how many have happened
  Trace trace_;
  bool keepsTrace_ = true;
  std::vector<std::string> violations_;
  std::size_t violationsTold_ = 0;  // how many the journal has
  std::optional<Random> chance_;    // where the world has a seed
};

/// One line of a trace: time, function, arguments and answer.
std::string traceLine(const TraceEntry& entry);

}  // namespace simulator
