#include "simulator/rules/focus.h"

#include "simulator/input/records.h"
#include "simulator/mac/arguments.h"
#include "simulator/rules/pace.h"

namespace simulator {

using platform::Call;
using platform::Function;

void FocusRules::after(const ObservedCall& seen, const Answer& answer, Violations& violations) {
  if (seen.call.function == Function::postRecord) noteRecord(seen.call, answer, violations);
  const bool asksForFront = seen.call.function == Function::frontProcess;
  if (asksForFront && driver::unpack<std::vector<std::int64_t>>(answer.value).at(0) != 0) {
    noteUnknown();
  }
  if (seen.call.function == Function::processPid) noteFront(answer);
  if (seen.call.function == Function::processForPid) noteSerial(seen.call, answer);
  if (seen.call.function == Function::axSetAttribute) checkField(seen.call, violations);
  if (!run_.endsRequest(seen.call)) return;
  for (const auto& [pid, count] : given_) {
    if (count > 0) held_.insert(pid);
  }
}

void FocusRules::noteRecord(const Call& call, const Answer& answer, Violations& violations) {
  const auto pid = static_cast<Pid>(Arguments(call).get<std::uint32_t>(1));
  const RecordKind kind = recordKind(Arguments(call).text(2));
  if (kind != RecordKind::givesFocus && kind != RecordKind::takesFocus) return;
  run_.owedWaits = {waitAfterFocusRecord};
  const bool accepted = driver::unpack<std::int32_t>(answer.value) == 0;
  if (kind == RecordKind::takesFocus) {
    noteTaken(pid);
    if (held_.erase(pid) > 0 && isUnknown_) {
      violations.push_back("I10: focus is taken back from whom the user may have in front");
    }
  } else if (accepted) {
    ++given_[pid];
    sawInFront_.erase(pid);
    leftUnknown_.erase(pid);
  }
}

/// A hold may have been given more than once, or not at all: it is taken back once.
void FocusRules::noteTaken(Pid pid) { given_[pid] = run_.isService() ? 0 : given_[pid] - 1; }

/// Focus that was held stays then: by now its process may have come to front.
void FocusRules::noteUnknown() {
  isUnknown_ = true;
  if (!run_.isService()) return;
  for (const auto& [pid, count] : given_) {
    if (count > 0) leftUnknown_.insert(pid);
  }
}

/// Focus is left with who has come to front since: to take it would take it from the user.
void FocusRules::noteFront(const Answer& answer) {
  const auto told = driver::unpack<std::vector<std::int64_t>>(answer.value);
  if (told.at(0) != 0) {
    noteUnknown();
    return;
  }
  isUnknown_ = false;
  const auto front = static_cast<Pid>(told.at(2));
  if (given_[front] > 0) sawInFront_.insert(front);
}

/// What stays with the user in front is not touched in any other way.
void FocusRules::checkField(const Call& call, Violations& violations) {
  const Arguments arguments(call);
  if (!run_.pressesKeys() || arguments.count() < 2 || arguments.text(1) != "AXFocused") return;
  const Pid pid = arguments.get<platform::ElementReference>(0).pid;
  if (given_[pid] > 0 && sawInFront_.count(pid) > 0) {
    violations.push_back("I10: a field gets its focus back where the window's focus was left");
  }
}

/// Without a serial number no record can be posted: the attempt has been made. Runs that press keys
/// ask for the number on other occasions too.
void FocusRules::noteSerial(const Call& call, const Answer& answer) {
  const auto told = driver::unpack<std::vector<std::int64_t>>(answer.value);
  const auto pid = Arguments(call).get<Pid>(0);
  const bool isAttempt = !run_.pressesKeys() || run_.lastSleep == waitAfterMotion ||
                         run_.livenessFailed || run_.interrupted;
  if (told.at(0) != 0 && given_[pid] > 0 && isAttempt) noteTaken(pid);
}

void FocusRules::atEnd(Violations& violations) {
  if (!run_.client.exited) return;                // nothing was in its hands any more
  if (run_.command() == "focus-release") return;  // it takes what another run has given
  const auto& environment = run_.client.environment;
  for (const auto& [pid, count] : given_) {
    const auto held = environment.find("CU_FOCUS_PID");
    const bool isHeld = held != environment.end() && held->second == std::to_string(pid);
    const bool isLeft = isHeld || sawInFront_.count(pid) > 0 || leftUnknown_.count(pid) > 0;
    if (count > 0 && !isLeft) {
      violations.push_back("I10: focus was given and never taken back");
    }
    if (count < 0) violations.push_back("I10: focus was taken back more often than given");
  }
}

}  // namespace simulator
