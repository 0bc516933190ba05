#include "guard/guard_tap.h"

#include <algorithm>
#include <cstdint>

#include "guard/grace.h"
#include "guard/guard_end.h"
#include "input/input_report.h"
#include "input/working_tap.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/ax.h"
#include "platform/loop.h"
#include "platform/quartz.h"

namespace driver {

namespace {

using quartz::EventType;
using tap::Kind;
using tap::Verdict;

// What a user does on purpose. The release of a key or a button is not among it: one that was down
// when the guard began goes up without anybody's return.
constexpr std::uint64_t returnMask =
    tap::maskOf(EventType::leftMouseDown) | tap::maskOf(EventType::rightMouseDown) |
    tap::maskOf(EventType::otherMouseDown) | tap::maskOf(EventType::mouseMoved) |
    tap::maskOf(EventType::keyDown) | tap::maskOf(EventType::scrollWheel);

/// Input that was under way when grace began is no answer to it.
constexpr double firstSeconds = 1;

bool isMovement(const tap::Event& event) {
  return event.type == static_cast<std::uint32_t>(EventType::mouseMoved);
}

// At the head: nobody else may act on what is going to be swallowed.
bool makeTap() {
  return makeWorkingTap(globals().guardTap, tap::Place::head, Kind::filters, returnMask,
                        guardVerdict);
}

bool isEnding() { return globals().guardRelocking || globals().guardExiting; }

constexpr const char* cannotWatch =
    "cannot watch for the user's return: accessibility permission is missing";

/// False when the other flow has decided before.
bool decide(GuardWatch watch) {
  GuardWatch expected = GuardWatch::undecided;
  return globals().guardWatch.compare_exchange_strong(expected, watch);
}

/// Waits until the main flow has come to watch, and gives what is left of the time for its first
/// round. After a long start a round is due at once, and has the time that every round has.
std::uint32_t timeAfterStart() {
  const std::uint64_t start = loop::uptimeNanoseconds();
  const bool hasBegun = loop::waitWithin(*globals().guardBegun, roundMicroseconds);
  // Before the first line nobody relies on the guard: it need not lock.
  if (!hasBegun && decide(GuardWatch::failed)) failInPlaceOfMainFlow(cannotWatch);
  const std::uint64_t passed = (loop::uptimeNanoseconds() - start) / 1'000;
  if (passed >= roundMicroseconds) return questionsMicroseconds;
  return std::max(roundMicroseconds - static_cast<std::uint32_t>(passed), questionsMicroseconds);
}

/// For a flow of its own.
void superviseMainFlow() {
  const std::uint32_t first = timeAfterStart();
  if (globals().guardWatch == GuardWatch::failed) return;
  awaitStuckMainFlow(first);
  endInPlaceOfMainFlow();
}

// The system may go on trusting a process to which it gives no taps any more. A tap without the
// permission holds up all that the user does until its process has gone: nothing more is tried.
void endUnlessPermitted() {
  const bool isPermitted = ax::trusted() && tap::canBeMade(Kind::filters, tap::noEvents);
  if (!isPermitted) lockAndExit("loop");
}

// Without a further question: it might not come back, and nobody watches meanwhile.
void endUnlessNoticed() {
  if (!isEnding() && globals().guardAwaitsNotice) lockAndExit("loop");
}

/// Looks whether the tap works. The system's notice that it has disabled the tap may be on its way:
/// until it comes, or its time is over, nothing more is asked. The answer might take longer.
void makeRound() {
  if (isEnding() || globals().guardAwaitsNotice) return;
  endUnlessPermitted();
  if (!tap::isEnabled(*globals().guardTap)) {
    globals().guardAwaitsNotice = true;
    loop::scheduleOnMain(noticePatience, 1, endUnlessNoticed);
  }
}

void meetNotice() {
  globals().guardAwaitsNotice = false;
  tap::enable(*globals().guardTap);
  makeRound();
}

}  // namespace

void watchForReturn() {
  globals().guardBegun = loop::makeSemaphore();
  loop::goRounds(betweenLooks, makeRound);
  // Before there is a tap: from then on it may hold up all that the user does, and the questions
  // about it may never come back.
  loop::startTask(superviseMainFlow);
  const bool watches = makeTap();
  if (!decide(watches ? GuardWatch::begun : GuardWatch::failed)) loop::suspend();
  if (!watches) fail(cannotWatch);
  loop::signal(*globals().guardBegun);
}

Verdict guardVerdict(const tap::Event& event) {
  if (isDisabledNotice(event)) {
    if (globals().guardTap) meetNotice();
    return Verdict::pass;
  }
  // The agent goes on working behind the cover: its input is no return, and must reach its target.
  if (!isUsersInput(event)) return Verdict::pass;
  if (globals().guardRelocking || globals().guardExiting) return Verdict::swallow;
  const GraceTime grace = hasGrace() ? graceTime() : GraceTime();
  if (grace.left <= 0) {
    endAtReturn();
  } else if (!isMovement(event) && grace.passed >= firstSeconds) {
    endInGrace();
  }
  return Verdict::swallow;
}

}  // namespace driver
