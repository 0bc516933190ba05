#include "simulator/rules/ending.h"

#include "simulator/input/posted_event.h"
#include "simulator/input/records.h"
#include "simulator/mac/arguments.h"

namespace simulator {

using platform::Call;
using platform::EventImage;
using platform::Function;
using quartz::EventType;

namespace {

constexpr Microseconds timeToEnd = 250'000;
constexpr Microseconds timeForClipboard = 300'000;
constexpr std::string_view toldText = "\"error\":\"the run was told to end by a signal\"";

/// What changes anything, and what takes a picture.
bool isAct(Function function) {
  switch (function) {
    case Function::publicPost:
    case Function::privatePost:
    case Function::postRecord:
    case Function::axPerform:
    case Function::axSetAttribute:
    case Function::clearPasteboard:
    case Function::writePasteboard:
    case Function::writeFilesToPasteboard:
    case Function::unhide:
    case Function::lockScreen:
    case Function::replaceFile:
    case Function::screenshot:
      return true;
    default:
      return false;
  }
}

bool endsProcess(Function function) {
  return function == Function::exit || function == Function::dieBySignal;
}

bool isRelease(const EventImage& event) {
  const EventType type = typeOf(event);
  return type == EventType::keyUp || type == EventType::leftMouseUp ||
         type == EventType::rightMouseUp;
}

}  // namespace

/// What lets go, gives back or puts back.
bool EndingRules::isUndoing(const Call& call) const {
  switch (call.function) {
    case Function::publicPost:
    case Function::privatePost:
      return isRelease(Arguments(call).get<EventImage>(1));
    case Function::postRecord:
      return recordKind(Arguments(call).text(2)) == RecordKind::takesFocus;
    case Function::clearPasteboard:
      return clears_ > 0;
    case Function::writePasteboard:
      return clears_ > 1;
    default:
      return false;
  }
}

/// What is left of the act in whose middle the run was told.
bool EndingRules::isUnderWay(const Call& call) const {
  if (isPost(call.function)) {
    return Arguments(call).get<EventImage>(1).identity == run_.latestIdentity;
  }
  return call.function == Function::postRecord &&
         recordKind(Arguments(call).text(2)) == RecordKind::secondOfKeyPair;
}

void EndingRules::before(const ObservedCall& seen, Violations& violations) {
  const Function function = seen.call.function;
  const auto& told = run_.client.told;
  const bool works = seen.flow == 0;
  // The call in which it came had been made before.
  const bool isFirst = told && works && calls_ == 0 && told->at == run_.mac.now;
  if (function == Function::writeOutput && works && (!told || isFirst)) replied_ = true;
  if (!told) return;
  if (works) ++calls_;
  if (endsProcess(function)) checkTime(violations);
  if (!isAct(function) || isUndoing(seen.call) || isFirst || isUnderWay(seen.call)) return;
  // What the run had sent when the signal came arrives after the news.
  if (told->fromOutside && ++actsOnTheWay_ == 1) return;
  violations.push_back("I24: an act was begun after the run had been told to end");
}

void EndingRules::after(const ObservedCall& seen, const Answer& /*answer*/,
                        Violations& /*violations*/) {
  if (seen.call.function == Function::clearPasteboard) ++clears_;
}

/// In real time others may hold the run up.
void EndingRules::checkTime(Violations& violations) const {
  if (run_.client.told->fromOutside) return;
  const Microseconds due = timeToEnd + (clears_ > 0 ? timeForClipboard : 0);
  if (run_.mac.now - run_.client.told->at > due) {
    violations.push_back("I24: the run took too long to end");
  }
}

/// A run whose line was on its way had done its work, and may end as if nothing had come.
void EndingRules::atEnd(Violations& violations) {
  const Client& client = run_.client;
  if (!client.told || !client.exited || run_.outputRefused || replied_) return;
  if (client.diedBySignal != client.told->signal) {
    violations.push_back("I24: the run was told to end, and did not end by that signal");
  }
  if (client.output.find(toldText) == std::string::npos) {
    violations.push_back("I24: the run was told to end, and does not say so");
  }
}

}  // namespace simulator
