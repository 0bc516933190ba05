#include "input/watcher.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "input/focus.h"
#include "input/input_report.h"
#include "input/working_tap.h"
#include "main/ending.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/quartz.h"
#include "platform/streams.h"
#include "platform/window_server.h"
#include "platform/workspace.h"

namespace driver {

namespace {

/// Writes one line of the watcher. A reader that has gone wants no more of them.
void writeLine(const Reply& line) {
  if (!emit(line)) process::exit(1);
}

// A pointer passes over many windows on its way to another, and asking for the list of windows at
// each step would cost more than the news is worth.
bool touches(platform::Pid target, const tap::Event& event) {
  if (event.type == static_cast<std::uint32_t>(quartz::EventType::mouseMoved)) return false;
  if (event.targetProcess == target) return true;
  if (isKeyInput(event)) return foregroundPID() == target;
  const auto windows = windowserver::windows(windowserver::Windows::onScreenWithoutDesktop);
  return windows && isOnWindowOf(target, event, *windows);
}

/// Milliseconds since the user's last input; 0 when there was none.
std::int64_t idleMilliseconds() {
  double shortest = std::numeric_limits<double>::infinity();
  // Of the watched types alone: idle time and reports speak of the same input.
  for (const quartz::EventType type : watchedTypes) {
    shortest = std::fmin(shortest, quartz::secondsSinceLast(type));
  }
  return wholeMilliseconds(shortest);
}

void addSubmittedTo(Reply& report) {
  const std::optional<workspace::Application> front = workspace::frontmost();
  if (front && front->bundleIdentifier) report["submit"] = *front->bundleIdentifier;
}

constexpr std::uint64_t watchedKeys = tap::maskOf(quartz::EventType::keyDown);

/// A watcher that hears nothing must not look like a user who does nothing.
[[noreturn]] void failToWatch() {
  fail("watching has ended: the system no longer serves the event tap");
}

// The system may call a tap enabled that hears nothing any more, its permission having gone.
void failUnlessPermitted() {
  if (!tap::canBeMade(tap::Kind::listens, watchedKeys)) failToWatch();
}

void failUnlessEnabled() {
  if (!tap::isEnabled(*globals().inputTap)) failToWatch();
}

// The system's notice that it has disabled the tap may be on its way: then there is a second look.
void makeRound() {
  failUnlessPermitted();
  if (!tap::isEnabled(*globals().inputTap)) {
    loop::scheduleOnMain(noticePatience, 1, failUnlessEnabled);
  }
}

void meetNotice() {
  tap::enable(*globals().inputTap);
  makeRound();
}

bool makeTap() {
  return makeWorkingTap(globals().inputTap, tap::Place::tail, tap::Kind::listens, watchedMask,
                        [](const tap::Event& event) {
                          reportInput(event);
                          return tap::Verdict::pass;
                        });
}

void writeFirstLine() {
  const std::optional<platform::Pid>& target = globals().watchedInputPID;
  Reply line = {{"ok", true}, {"watching", true}, {"idleMs", idleMilliseconds()}};
  if (target) {
    line["targetPid"] = *target;
    // No input has come yet: an application in front is the one that the next will touch.
    line["touchesTarget"] = foregroundPID() == *target;
  }
  writeLine(line);
}

/// Whoever started the watcher ends it by closing its standard input.
void endWithInput() {
  while (!streams::readAvailable().empty()) {
  }
  // A line that is being written is written to its end, if its reader takes it.
  streams::acquireOutputWithin(endingMicroseconds);
  process::exit(0);
}

}  // namespace

void reportInput(const tap::Event& event) {
  // The system disables a tap that was slow once: what came meanwhile is lost, and no more.
  if (isDisabledNotice(event)) {
    if (globals().inputTap) meetNotice();
    return;
  }
  if (!isUsersInput(event)) return;
  const double now = loop::secondsSince1970();
  const std::optional<platform::Pid>& target = globals().watchedInputPID;
  const bool touchesTarget = target && touches(*target, event);
  const Promptness promptness = promptnessOf(event, touchesTarget);
  if (promptness == Promptness::throttled && !isReportDue(now, globals().lastInputReport)) return;
  globals().lastInputReport = now;
  Reply report = {{"input", inputKind(event)}, {"at", wholeMilliseconds(now)}};
  if (target) report["touchesTarget"] = touchesTarget;
  if (promptness == Promptness::submitted) addSubmittedTo(report);
  writeLine(report);
}

void watchInput(std::optional<platform::Pid> target) {
  globals().watchedInputPID = target;
  if (!makeTap()) fail("cannot watch input: accessibility permission is missing");
  writeFirstLine();
  globals().sharesOutput = true;
  loop::goRounds(betweenLooks, makeRound);
  loop::startTask(endWithInput);
  loop::park();
}

void watchInputCommand(const Arguments& arguments) {
  process::ignoreBrokenPipes();
  std::optional<platform::Pid> target;
  if (arguments.size() > 2) {
    const std::optional<workspace::Application> app = runningApp(arguments[2]);
    if (!app) fail("target app is not running");
    target = app->pid;
  }
  watchInput(target);
}

}  // namespace driver
