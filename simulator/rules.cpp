#include "simulator/rules.h"

#include <algorithm>
#include <array>

#include "simulator/input.h"
#include "simulator/reply_rules.h"

namespace simulator {

using platform::Call;
using platform::EventImage;
using platform::Function;
using quartz::EventType;

namespace {

constexpr std::int64_t ownEventTag = 0x5A545256;
constexpr std::uint32_t waitAfterPost = 12'000;
constexpr std::uint32_t waitAfterFocusRecord = 40'000;
constexpr int timeoutsMax = 2;
constexpr std::size_t recordTypeOffset = 0x08;
constexpr std::size_t recordFocusOffset = 0x8A;
constexpr char focusRecordType = 0x0D;

/// Every wait that any command makes, in microseconds.
constexpr std::array<std::uint32_t, 11> knownWaits = {
    1'000, 12'000, 15'000, 40'000, 50'000, 80'000, 100'000, 150'000, 200'000, 300'000, 500'000};

bool usable(const Session& session) {
  return !session.readable || (!session.locked.value_or(false) && session.onConsole.value_or(true));
}

/// Commands whose failed write the reply tells by "ok" alone.
bool isSilentWrite(const std::string& command) {
  return command == "ax-focus" || command == "ax-slider";
}

bool isPost(Function function) {
  return function == Function::publicPost || function == Function::privatePost;
}

EventImage eventOf(const Call& call) { return driver::unpack<EventImage>(call.arguments.at(1)); }

bool isDown(std::uint32_t type) {
  return type == static_cast<std::uint32_t>(EventType::leftMouseDown) ||
         type == static_cast<std::uint32_t>(EventType::rightMouseDown);
}

bool isUp(std::uint32_t type) {
  return type == static_cast<std::uint32_t>(EventType::leftMouseUp) ||
         type == static_cast<std::uint32_t>(EventType::rightMouseUp);
}

std::int64_t tagOf(const EventImage& event) {
  return fieldOf(event, quartz::Field::sourceUserData);
}

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

}  // namespace

Rules::Rules(const Mac& mac, const Client& client)
    : mac_(mac), client_(client), insert_(mac, client) {}

std::string Rules::command() const {
  return client_.arguments.size() > 1 ? client_.arguments[1] : "";
}

bool Rules::isInputCommand() const { return command().compare(0, 3, "bg-") == 0; }

void Rules::before(const Call& call, Violations& violations) {
  pointerBefore_ = mac_.world.pointer;
  frontBefore_ = mac_.world.frontmost;
  if (isPost(call.function)) posted_ = eventOf(call);
  checkPace(call, violations);
  if (isPost(call.function)) checkPost(call, violations);
  if (call.function == Function::screenshot) checkScreenshot(call, violations);
  insert_.before(call, violations);
}

void Rules::after(const Call& call, const Answer& answer, bool faulty, Violations& violations) {
  checkUserUntouched(call, violations);
  insert_.after(call, answer, faulty);
  checkStall(call, answer, violations);
  switch (call.function) {
    case Function::session:
      noteSession(answer);
      break;
    case Function::nullSignal:
      if (!driver::unpack<bool>(answer.value)) livenessFailed_ = true;
      break;
    case Function::postRecord:
      noteRecord(call, answer);
      break;
    case Function::processForPid:
    case Function::processPid:
      noteSerial(call, answer);
      break;
    case Function::createMouseEvent:
      creationFailed_ = creationFailed_ || answer.value.isNothing();
      break;
    case Function::writeOutput:
      outputRefused_ = outputRefused_ || !driver::unpack<bool>(answer.value);
      break;
    case Function::replaceFile:
      fileReplaced_ = fileReplaced_ || driver::unpack<bool>(answer.value);
      break;
    default:
      break;
  }
}

/// I5: the wait owed by a post operation or a focus record comes right after it, and no wait is
/// longer than told.
void Rules::checkPace(const Call& call, Violations& violations) {
  const bool isSleep = call.function == Function::sleep;
  if (owedSleep_) {
    const bool secondRoute = lastWasPrivatePost_ && call.function == Function::publicPost &&
                             posted_.identity == lastIdentity_;
    const bool paid = isSleep && driver::unpack<std::uint32_t>(call.arguments.at(0)) == *owedSleep_;
    if (paid) {
      owedSleep_.reset();
    } else if (!secondRoute) {
      violations.push_back("I5: a wait of " + std::to_string(*owedSleep_) + " us is missing");
      owedSleep_.reset();
    }
  }
  lastWasPrivatePost_ = call.function == Function::privatePost;
  if (!isSleep) return;
  const auto length = driver::unpack<std::uint32_t>(call.arguments.at(0));
  if (std::find(knownWaits.begin(), knownWaits.end(), length) == knownWaits.end()) {
    violations.push_back("I5: a wait of " + std::to_string(length) + " us is never due");
  }
}

void Rules::checkPost(const Call& call, Violations& violations) {
  const auto pid = driver::unpack<Pid>(call.arguments.at(0));
  const EventImage& event = posted_;
  owedSleep_ = waitAfterPost;
  if (tagOf(event) != ownEventTag) violations.push_back("I3: an event without the own tag");
  if (postedTo_ && *postedTo_ != pid) violations.push_back("I3: events to two processes");
  postedTo_ = pid;
  if (lastIdentity_ == event.identity) return;  // the second route of one operation
  lastIdentity_ = event.identity;
  checkOperation(pid, event, violations);
}

/// One post operation, whichever routes it takes.
void Rules::checkOperation(Pid /*pid*/, const EventImage& event, Violations& violations) {
  if (checkedUnusable_) violations.push_back("I1: posted after a check found no usable session");
  if (!usable(mac_.world.session) && ++operationsWhileUnusable_ > 1) {
    violations.push_back("I1: two operations without a session check between them");
  }
  if (livenessFailed_) violations.push_back("I2: posted after the liveness check failed");
  const std::optional<Pid> service = servicePid(client_);
  if (service && mac_.world.processes.count(*service) == 0 && ++operationsAfterDeath_ > 1) {
    violations.push_back("I2: two operations after the service's death");
  }
  if (isDown(event.type)) ++pressed_[event.type];
  if (isUp(event.type)) --pressed_[event.type - 1];
  const auto window = static_cast<WindowNumber>(fieldOf(event, quartz::Field::targetWindow));
  if (window != 0 && !inScope(window)) {
    violations.push_back("I11: an event into a window outside the scope");
  }
}

bool Rules::inScope(WindowNumber number) const {
  const Window* window = findWindow(mac_.world, number);
  return window == nullptr || titleInScope(client_, window->title.value_or(""));
}

/// I11: of the windows of the process that owns the first titled one, none with a title outside the
/// scope is captured.
void Rules::checkScreenshot(const Call& call, Violations& violations) {
  if (command() != "capture") return;
  const auto filter = driver::unpack<platform::WireFilter>(call.arguments.at(0));
  Pid target = 0;
  for (const WindowNumber number : filter.windows) {
    const Window* window = findWindow(mac_.world, number);
    if (window == nullptr) continue;
    if (target == 0) target = window->owner;  // the application's own windows come first
    if (window->owner == target && !inScope(number)) {
      violations.push_back("I11: a window outside the scope is captured");
    }
  }
}

/// I3: no call moves the user's pointer or front application. An application that quits by its own
/// reaction gives way to another.
void Rules::checkUserUntouched(const Call& call, Violations& violations) {
  if (mac_.world.pointer != pointerBefore_) {
    violations.push_back("I3: the user's pointer moved");
  }
  const bool acts = isPost(call.function) || call.function == Function::axPerform;
  const bool frontQuit =
      acts && frontBefore_ != 0 && findApplication(mac_.world, frontBefore_) == nullptr;
  if (mac_.world.frontmost != frontBefore_ && !frontQuit) {
    violations.push_back("I3: the front application changed");
  }
}

/// I15: of one process, a run waits for two time-outs at most.
void Rules::checkStall(const Call& call, const Answer& answer, Violations& violations) {
  if (!isMessage(call.function) || answer.delay < messagingTimeout) return;
  const Pid pid = driver::unpack<platform::ElementReference>(call.arguments.at(0)).pid;
  if (++timeouts_[pid] > timeoutsMax) {
    violations.push_back("I15: a hung application is asked again");
  }
}

void Rules::noteSession(const Answer& answer) {
  const auto session = driver::unpack<std::optional<windowserver::Session>>(answer.value);
  operationsWhileUnusable_ = 0;
  checkedUnusable_ =
      session && (session->locked.value_or(false) || !session->onConsole.value_or(true));
  everUnusable_ = everUnusable_ || checkedUnusable_;
}

void Rules::noteRecord(const Call& call, const Answer& answer) {
  const auto pid = static_cast<Pid>(driver::unpack<std::uint32_t>(call.arguments.at(1)));
  const auto record = driver::unpack<std::string>(call.arguments.at(2));
  if (record.size() <= recordFocusOffset || record[recordTypeOffset] != focusRecordType) return;
  owedSleep_ = waitAfterFocusRecord;
  const bool accepted = driver::unpack<std::int32_t>(answer.value) == 0;
  if (record[recordFocusOffset] == 2) {
    --given_[pid];
  } else if (accepted) {
    ++given_[pid];
  }
}

void Rules::noteSerial(const Call& call, const Answer& answer) {
  const auto serial = driver::unpack<std::vector<std::int64_t>>(answer.value);
  if (call.function == Function::processPid) {
    if (serial.at(0) == 0) sawInFront_[static_cast<Pid>(serial.at(2))] = true;
    return;
  }
  // Without a serial number no record can be posted: the attempt has been made.
  const auto pid = driver::unpack<Pid>(call.arguments.at(0));
  if (serial.at(0) != 0 && given_[pid] > 0) --given_[pid];
}

void Rules::finish(Violations& violations) {
  if (finished_) return;
  finished_ = true;
  if (!client_.exited) return;  // killed: nothing was in its hands any more
  if (owedSleep_) violations.push_back("I5: ended without the wait after a post or record");
  if (!outputRefused_) checkReply(violations);
  checkButtons(violations);
  checkFocus(violations);
}

void Rules::checkReply(Violations& violations) const {
  const ReplyFacts reply = readReply(client_.output);
  for (const std::string& fault : reply.faults) violations.push_back("I6: " + fault);
  if (reply.faults.empty() && !reply.ok && !reply.saysWhy && !isSilentWrite(command())) {
    violations.push_back("I6: a failure without an \"error\"");
  }
  insert_.finish(reply.ok, violations);
  if (reply.ok && client_.status != 0) violations.push_back("I6: success with a failure status");
  if (client_.status != 0 && client_.status != 1) violations.push_back("I6: unknown exit status");
  if (livenessFailed_ && (client_.status != 1 || client_.output != livenessRefusal)) {
    violations.push_back("I2: the run did not end with the refusal");
  }
  if (isInputCommand() && everUnusable_ && reply.ok) {
    violations.push_back("I8: input was withheld, yet the reply is a success");
  }
  // The file's own system may refuse what the Mac lets through; the reply says so.
  if (fileReplaced_ && !reply.ok && !reply.cannotWrite) {
    violations.push_back("I19: a file was replaced by a failed run");
  }
}

/// I4.
void Rules::checkButtons(Violations& violations) const {
  if (everUnusable_ || livenessFailed_ || creationFailed_) return;
  for (const auto& [type, count] : pressed_) {
    if (count != 0) violations.push_back("I4: a button was left in the wrong state");
  }
}

/// I10.
void Rules::checkFocus(Violations& violations) const {
  if (command() == "focus-release") return;
  for (const auto& [pid, count] : given_) {
    const auto held = client_.environment.find("CU_FOCUS_PID");
    const bool isHeld = held != client_.environment.end() && held->second == std::to_string(pid);
    const auto seen = sawInFront_.find(pid);
    const bool cameToFront = seen != sawInFront_.end() && seen->second;
    if (count > 0 && !isHeld && !cameToFront) {
      violations.push_back("I10: focus was given and never taken back");
    }
    if (count < 0) violations.push_back("I10: focus was taken back more often than given");
  }
}

}  // namespace simulator
