#include "simulator/rules/user.h"

#include "simulator/mac/arguments.h"

namespace simulator {

using platform::Call;
using platform::Function;

namespace {

constexpr int timeoutsMax = 2;

bool isMessage(Function function) {
  switch (function) {
    case Function::axAttribute:
    case Function::axAttributes:
    case Function::axActionNames:
    case Function::axElementAt:
    case Function::axPerform:
    case Function::axSetAttribute:
    case Function::axGetWindow:
      return true;
    default:
      return false;
  }
}

/// True for calls during which the user goes on: they wait, or let go what a tap has held.
bool letsUserAct(Function function) {
  switch (function) {
    case Function::nextItem:
    case Function::nextStop:
    case Function::readLine:
    case Function::readAvailable:
    case Function::writeOutput:
    case Function::acquireOutput:
    case Function::suspend:
    case Function::tapVerdict:
      return true;
    default:
      return false;
  }
}

/// The application that a call lets react; 0 for a call that only reads.
Pid actsOn(const Call& call) {
  if (isPost(call.function)) return Arguments(call).get<Pid>(0);
  if (call.function != Function::axPerform && call.function != Function::axSetAttribute) return 0;
  return Arguments(call).get<platform::ElementReference>(0).pid;
}

/// The serial numbers of processes, as calls answer: an error, and two halves. Ours are a nothing
/// and the process id.
std::vector<std::int64_t> serialOf(const Answer& answer) {
  return driver::unpack<std::vector<std::int64_t>>(answer.value);
}

}  // namespace

void UserRules::look() {
  const World& world = run_.mac.world;
  pointerBefore_ = world.pointer;
  frontBefore_ = world.frontmost;
  isToBeAsked_ = world.system.asksForRecording;
  const Application* front = findApplication(world, frontBefore_);
  keyboardBefore_ = front == nullptr ? 0 : front->focusedWindow;
}

void UserRules::after(const ObservedCall& seen, const Answer& answer, Violations& violations) {
  const Call& call = seen.call;
  checkUntouched(call, violations);
  checkStall(call, answer, violations);
  noteFront(seen, answer);
  if (run_.endsRequest(call)) timeouts_.clear();
}

void UserRules::noteFront(const ObservedCall& seen, const Answer& answer) {
  const Function function = seen.call.function;
  const bool isFailure = function == Function::frontProcess && serialOf(answer).at(0) != 0;
  if (isFailure || function == Function::processPid) {
    const auto told = serialOf(answer);
    toldInFront_ = told.at(0) == 0 ? static_cast<Pid>(told.at(2)) : 0;
    isJustTold_ = true;
    tellingFlow_ = seen.flow;
  } else if (function != Function::postRecord && seen.flow == tellingFlow_) {
    isJustTold_ = false;
  }
}

void UserRules::checkUntouched(const Call& call, Violations& violations) const {
  if (letsUserAct(call.function)) return;
  const World& world = run_.mac.world;
  if (world.pointer != pointerBefore_) violations.push_back("I3: the user's pointer moved");
  if (frontBefore_ != 0 && actsOn(call) == frontBefore_) return;
  // The system's own question comes up when it will, and no run can know of it before.
  if (isToBeAsked_ && !world.system.asksForRecording) return;
  if (world.frontmost != frontBefore_) {
    violations.push_back("I3: the front application changed");
    return;
  }
  const Application* front = findApplication(world, frontBefore_);
  if (front == nullptr || front->focusedWindow == keyboardBefore_) return;
  // A pair of key records follows right after an answer that somebody else is in front. No run
  // could notice who comes in between.
  const bool cameSince = call.function == Function::postRecord && frontBefore_ != toldInFront_;
  if (!cameSince || !isJustTold_) violations.push_back("I3: the user's key window changed");
}

void UserRules::checkStall(const Call& call, const Answer& answer, Violations& violations) {
  if (!isMessage(call.function) || answer.delay < messagingTimeout) return;
  const Pid pid = Arguments(call).get<platform::ElementReference>(0).pid;
  if (++timeouts_[pid] > timeoutsMax) {
    violations.push_back("I15: a hung application is asked again");
  }
}

}  // namespace simulator
