#include "simulator/rules/rules.h"

#include "simulator/input/posted_keys.h"
#include "simulator/input/posted_pointer.h"
#include "simulator/mac/arguments.h"
#include "simulator/rules/replies.h"

namespace simulator {

using platform::Call;
using platform::EventImage;
using platform::Function;
using quartz::EventType;

namespace {

constexpr std::int64_t ownEventTag = 0x5A545256;
constexpr std::uint32_t waitBetweenClicks = 80'000;
constexpr int timeoutsMax = 2;

bool usable(const Session& session) {
  return !session.readable || (!session.locked.value_or(false) && session.onConsole.value_or(true));
}

/// Commands whose reply tells a failure by "ok" alone.
bool isSilent(const std::string& command) {
  return command == "ax-focus" || command == "ax-slider" || command == "lock-now";
}

bool isPost(Function function) {
  return function == Function::publicPost || function == Function::privatePost;
}

EventImage eventOf(const Call& call) { return Arguments(call).get<EventImage>(1); }

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

}  // namespace

Rules::Rules(const Mac& mac, const Client& client)
    : mac_(mac),
      client_(client),
      insert_(mac, client),
      guard_(mac, client),
      keys_(mac, client),
      clipboard_(mac, client),
      service_(client) {}

std::string Rules::command() const {
  return client_.arguments.size() > 1 ? client_.arguments[1] : "";
}

bool Rules::isInputCommand() const { return command().compare(0, 3, "bg-") == 0; }

void Rules::before(const Call& call, std::size_t flow, Violations& violations) {
  look();
  if (isPost(call.function)) posted_ = eventOf(call);
  if (isPost(call.function) || call.function == Function::postRecord) postingFlow_ = flow;
  if (flow == postingFlow_) pace_.before(call, postedSoFar(call), violations);
  if (isPost(call.function)) checkPost(call, violations);
  if (call.function == Function::screenshot) checkScreenshot(call, violations);
  elements_.before(call, violations);
  insert_.before(call, violations);
  guard_.before(call, flow, violations);
  keys_.before(call, pace_.lastSleep(), livenessFailed_, violations);
  clipboard_.before(call, pace_.lastSleep(), violations);
}

void Rules::look() {
  pointerBefore_ = mac_.world.pointer;
  frontBefore_ = mac_.world.frontmost;
  const Application* front = findApplication(mac_.world, frontBefore_);
  keyboardBefore_ = front == nullptr ? 0 : front->focusedWindow;
}

void Rules::after(const Call& call, const Answer& answer, bool faulty, std::size_t flow,
                  Violations& violations) {
  checkUserUntouched(call, violations);
  elements_.after(call, answer);
  insert_.after(call, answer, faulty);
  guard_.after(call, answer, flow);
  checkStall(call, answer, violations);
  clipboard_.after(call, answer);
  if (auto owed = keys_.after(call, answer); !owed.empty()) pace_.owe(std::move(owed));
  switch (call.function) {
    case Function::session:
      noteSession(answer);
      break;
    case Function::nullSignal:
      // A service asks for its targets.
      if (!service_.concernsUs() && !driver::unpack<bool>(answer.value)) livenessFailed_ = true;
      break;
    case Function::postRecord:
      noteRecord(call, answer);
      break;
    case Function::frontProcess:
      if (driver::unpack<std::vector<std::int64_t>>(answer.value).at(0) != 0) toldInFront_ = 0;
      break;
    case Function::processForPid:
    case Function::processPid:
      noteSerial(call, answer);
      break;
    case Function::createMouseEvent:
    case Function::createKeyboardEvent:
      creationFailed_ = creationFailed_ || answer.value.isNothing();
      break;
    case Function::writeOutput:
      outputRefused_ = outputRefused_ || !driver::unpack<bool>(answer.value);
      break;
    case Function::nextStop:
      service_.interrupt();
      break;
    case Function::nextItem:
      noteItem(answer);
      break;
    case Function::acquireOutput:
      if (service_.concernsUs()) endRequest();
      break;
    case Function::replaceFile:
      fileReplaced_ = fileReplaced_ || driver::unpack<bool>(answer.value);
      break;
    default:
      break;
  }
}

PostedSoFar Rules::postedSoFar(const Call& call) const {
  PostedSoFar posted;
  if (lastIdentity_) posted.latest = &posted_;
  posted.again = isPost(call.function) && posted_.identity == lastIdentity_;
  posted.mayHurryFocusBack = livenessFailed_ || keys_.concernsUs() || service_.isInterrupted();
  return posted;
}

void Rules::checkPost(const Call& call, Violations& violations) {
  const auto pid = Arguments(call).get<Pid>(0);
  const EventImage& event = posted_;
  pace_.owe(isKeyEvent(event) ? keys_.waitsAfter(event) : waitsAfter(event));
  if (tagOf(event) != ownEventTag) violations.push_back("I3: an event without the own tag");
  // The modifiers of a key are checked with its command.
  const bool isTold = isKeyEvent(event) && keys_.concernsUs();
  if (event.flags != 0 && !isTold) {
    violations.push_back("I3: an event with the user's modifiers");
  }
  if (postedTo_ && *postedTo_ != pid) violations.push_back("I3: events to two processes");
  postedTo_ = pid;
  if (lastIdentity_ == event.identity) return;  // the second route of one operation
  lastIdentity_ = event.identity;
  checkOperation(event, violations);
}

/// One post operation, whichever routes it takes.
void Rules::checkOperation(const EventImage& event, Violations& violations) {
  service_.post(violations);
  if (checkedUnusable_) violations.push_back("I1: posted after a check found no usable session");
  if (!usable(mac_.world.session) && ++operationsWhileUnusable_ > 1) {
    violations.push_back("I1: two operations without a session check between them");
  }
  if (livenessFailed_) violations.push_back("I2: posted after the liveness check failed");
  const std::optional<Pid> service = servicePid(client_);
  if (service && mac_.world.processes.count(*service) == 0 && ++operationsAfterDeath_ > 1) {
    violations.push_back("I2: two operations after the service's death");
  }
  const bool secondClick = isPress(event) && fieldOf(event, quartz::Field::clickState) == 2;
  if (secondClick && pace_.lastSleep() != waitBetweenClicks && !creationFailed_) {
    violations.push_back("I5: a second click without the wait before it");
  }
  if (isPress(event)) ++pressed_[event.type];
  if (isUp(event.type)) --pressed_[event.type - 1];
  const auto window = static_cast<WindowNumber>(fieldOf(event, quartz::Field::targetWindow));
  if (window != 0 && !inScope(window)) {
    violations.push_back("I11: an event into a window outside the scope");
  }
}

bool Rules::inScope(WindowNumber number) const {
  // Each session of a service has a scope of its own, which only the service knows.
  if (command() == "capture-service") return true;
  // Who may not record the screen is told no titles, and a window without one is in every scope.
  if (!mac_.world.screenRecordingAllowed) return true;
  const Window* window = findWindow(mac_.world, number);
  return window == nullptr || titleInScope(client_, window->title.value_or(""));
}

/// I11: of the windows of the process that owns the first titled one, none with a title outside the
/// scope is captured.
void Rules::checkScreenshot(const Call& call, Violations& violations) {
  if (command() != "capture") return;
  const auto filter = Arguments(call).get<platform::WireFilter>(0);
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

/// I3: no call moves the user's pointer, front application or key window, unless the front
/// application is the target itself, which may react by changing its window or quitting.
void Rules::checkUserUntouched(const Call& call, Violations& violations) {
  if (letsUserAct(call.function)) return;
  if (mac_.world.pointer != pointerBefore_) {
    violations.push_back("I3: the user's pointer moved");
  }
  if (frontBefore_ != 0 && actsOn(call) == frontBefore_) return;
  if (mac_.world.frontmost != frontBefore_) {
    violations.push_back("I3: the front application changed");
    return;
  }
  const Application* front = findApplication(mac_.world, frontBefore_);
  if (front == nullptr || front->focusedWindow == keyboardBefore_) return;
  // Key records follow a look at the foreground. Who comes to front in between is not noticed.
  const bool cameSince = call.function == Function::postRecord && frontBefore_ != toldInFront_;
  if (!cameSince) violations.push_back("I3: the user's key window changed");
}

/// I15: of one process, a run waits for two time-outs at most.
void Rules::checkStall(const Call& call, const Answer& answer, Violations& violations) {
  if (!isMessage(call.function) || answer.delay < messagingTimeout) return;
  const Pid pid = Arguments(call).get<platform::ElementReference>(0).pid;
  if (++timeouts_[pid] > timeoutsMax) {
    violations.push_back("I15: a hung application is asked again");
  }
}

void Rules::noteItem(const Answer& answer) {
  const auto item = driver::unpack<platform::WireItem>(answer.value);
  if (item.kind == platform::ItemKind::signal) service_.interrupt();
}

/// A request of a service, which ends with its line, is what to others is a run, as far as pace and
/// targets go.
void Rules::endRequest() {
  postedTo_.reset();
  lastIdentity_.reset();
  pace_.endRequest();
  elements_.endRequest();
  timeouts_.clear();
}

void Rules::noteSession(const Answer& answer) {
  operationsWhileUnusable_ = 0;
  checkedUnusable_ = !tellsUsable(answer);
  everUnusable_ = everUnusable_ || checkedUnusable_;
}

void Rules::noteRecord(const Call& call, const Answer& answer) {
  const auto pid = static_cast<Pid>(Arguments(call).get<std::uint32_t>(1));
  const RecordKind kind = recordKind(Arguments(call).text(2));
  if (kind != RecordKind::givesFocus && kind != RecordKind::takesFocus) return;
  pace_.owe({waitAfterFocusRecord});
  const bool accepted = driver::unpack<std::int32_t>(answer.value) == 0;
  if (kind == RecordKind::takesFocus) {
    // A hold may have been given more than once, or not at all: it is taken back once.
    given_[pid] = service_.concernsUs() ? 0 : given_[pid] - 1;
  } else if (accepted) {
    ++given_[pid];
    sawInFront_.erase(pid);
  }
}

void Rules::noteSerial(const Call& call, const Answer& answer) {
  const auto serial = driver::unpack<std::vector<std::int64_t>>(answer.value);
  if (call.function == Function::processPid) {
    const auto front = static_cast<Pid>(serial.at(2));
    toldInFront_ = serial.at(0) == 0 ? front : 0;
    if (serial.at(0) == 0 && given_[front] > 0) sawInFront_.insert(front);
    return;
  }
  // Without a serial number no record can be posted: the attempt has been made.
  const auto pid = Arguments(call).get<Pid>(0);
  const bool isAttempt =
      !keys_.concernsUs() || pace_.lastSleep() == waitAfterMotion || livenessFailed_;
  if (serial.at(0) != 0 && given_[pid] > 0 && isAttempt) --given_[pid];
}

void Rules::finish(Violations& violations) {
  if (finished_) return;
  finished_ = true;
  guard_.finish(violations);
  if (isLongLived(command()) && !outputRefused_) checkLines(violations);
  if (service_.concernsUs() && !outputRefused_) service_.finish(violations);
  if (!client_.exited) return;  // killed: nothing was in its hands any more
  pace_.finish(service_.isInterrupted(), violations);
  if (!outputRefused_ && !isLongLived(command())) checkReply(violations);
  checkButtons(violations);
  checkFocus(violations);
  if (!client_.diedBySignal) clipboard_.finish(violations);
}

/// I7.
void Rules::checkLines(Violations& violations) const {
  // Who is killed may be about to end a line, and who ends before its reader takes the line feed.
  const std::string& output = client_.output;
  const bool isWhole = client_.exited && !client_.readerStalls;
  const std::string lines = isWhole ? output : output.substr(0, output.rfind('\n') + 1);
  for (const std::string& fault : lineFaults(lines)) violations.push_back("I7: " + fault);
  if (client_.exited && !client_.diedBySignal && client_.output.empty()) {
    violations.push_back("I7: the run ended without a line");
  }
  if (livenessFailed_ && client_.output != livenessRefusal) {
    violations.push_back("I2: the run did not end with the refusal");
  }
}

void Rules::checkReply(Violations& violations) const {
  const ReplyFacts reply = readReply(client_.output);
  for (const std::string& fault : reply.faults) violations.push_back("I6: " + fault);
  if (reply.faults.empty() && !reply.ok && !reply.saysWhy && !isSilent(command())) {
    violations.push_back("I6: a failure without an \"error\"");
  }
  insert_.finish(reply.ok, violations);
  if (reply.ok && client_.status != 0) violations.push_back("I6: success with a failure status");
  if (client_.status != 0 && client_.status != 1) violations.push_back("I6: unknown exit status");
  if (livenessFailed_ && (client_.status != 1 || client_.output != livenessRefusal)) {
    violations.push_back("I2: the run did not end with the refusal");
  }
  const bool isExcused = everUnusable_ || livenessFailed_ || creationFailed_;
  keys_.finish(reply.ok && !creationFailed_, isExcused, violations);
  if (isInputCommand() && !keys_.concernsUs() && everUnusable_ && reply.ok) {
    violations.push_back("I8: input was withheld, yet the reply is a success");
  }
  // The file's own system may refuse what the Mac lets through; the reply says so.
  if (fileReplaced_ && !reply.ok && !reply.cannotWrite) {
    violations.push_back("I19: a file was replaced by a failed run");
  }
}

/// I4.
void Rules::checkButtons(Violations& violations) const {
  if (everUnusable_ || livenessFailed_ || creationFailed_ || service_.isInterrupted()) return;
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
    if (count > 0 && !isHeld && sawInFront_.count(pid) == 0) {
      violations.push_back("I10: focus was given and never taken back");
    }
    if (count < 0) violations.push_back("I10: focus was taken back more often than given");
  }
}

}  // namespace simulator
