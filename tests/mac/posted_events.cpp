// Posts pointer events to an application of our own in the background, in the form in which driver
// does it and in others, and compares what arrives.
#include <cstdio>
#include <map>
#include <string>

#include "support/answer.h"
#include "support/posting.h"
#include "support/receiver.h"
#include "support/records.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Form;
using probe::PointerTarget;
using probe::Receiver;
using probe::Verdict;
using probe::verdictOf;

constexpr int quietMilliseconds = 400;
constexpr const char* pressed = "event 1 ";

struct Answer {
  Verdict verdict;
  Evidence evidence;
};

/// An application, and a point of its first window.
struct Desk {
  Receiver& receiver;
  PointerTarget target;
  CGRect bounds;

  std::vector<std::string> lines() { return receiver.linesUntilQuiet(quietMilliseconds); }

  /// What arrives of a click.
  std::vector<std::string> click(const Form& form) {
    lines();
    probe::postClick(target, form);
    return lines();
  }
};

std::string pressedIn(std::uint32_t window) { return pressed + std::to_string(window) + " "; }

Answer postToProcess(Desk& desk) {
  const CGPoint before = probe::pointer();
  const pid_t front = probe::frontPid();
  Form prescribed;
  prescribed.pointIsGlobal = true;
  const auto lines = desk.click(prescribed);
  const CGPoint after = probe::pointer();
  const bool pointerStays = before.x == after.x && before.y == after.y;
  const bool frontStays = front == probe::frontPid();
  const bool arrives = probe::countThatBegin(lines, pressedIn(desk.target.window)) == 1;
  return {verdictOf(arrives && pointerStays && frontStays),
          Evidence()
              .addJson("arrived", probe::jsonList(lines))
              .add("pointer stays", pointerStays)
              .add("front application stays", frontStays)};
}

/// Where the press is in the window, counted upwards as AppKit does.
std::string place(const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    unsigned window = 0;
    double x = 0;
    double y = 0;
    if (std::sscanf(line.c_str(), "event 1 %u %lf %lf", &window, &x, &y) != 3) continue;
    return std::to_string(static_cast<int>(x)) + "," + std::to_string(static_cast<int>(y));
  }
  return "nowhere";
}

Answer windowLocation(Desk& desk) {
  Form inWindow;
  Form global;
  global.pointIsGlobal = true;
  const int height = static_cast<int>(desk.bounds.size.height);
  const int x = static_cast<int>(desk.target.inWindow.x);
  const int y = static_cast<int>(desk.target.inWindow.y);
  const std::string downwards = std::to_string(x) + "," + std::to_string(height - y);
  const std::string upwards = std::to_string(x) + "," + std::to_string(y);
  const std::string seen = place(desk.click(inWindow));
  const Verdict verdict = seen == downwards ? Verdict::confirmed
                          : seen == upwards ? Verdict::refuted
                                            : Verdict::notShown;
  return {verdict, Evidence()
                       .add("expected of y downwards", downwards)
                       .add("expected of y upwards", upwards)
                       .add("given the point in the window", seen)
                       .add("given the global point", place(desk.click(global)))};
}

Answer targetWindow(Desk& desk) {
  Form without;
  without.targetsWindow = false;
  Form alone;
  alone.namesUnder = false;
  const std::string own = pressedIn(desk.target.window);
  const auto with51 = desk.click({});
  const auto without51 = desk.click(without);
  const auto with51Alone = desk.click(alone);
  return {verdictOf(probe::countThatBegin(with51, own) == 1),
          Evidence()
              .addJson("with fields 51, 91 and 92", probe::jsonList(with51))
              .addJson("without field 51", probe::jsonList(without51))
              .addJson("with field 51 alone", probe::jsonList(with51Alone))};
}

long long newField58() {
  constexpr auto field = static_cast<CGEventField>(58);
  CGEventRef event =
      CGEventCreateMouseEvent(nullptr, kCGEventLeftMouseDown, {1, 1}, kCGMouseButtonLeft);
  const long long value = CGEventGetIntegerValueField(event, field);
  CFRelease(event);
  return value;
}

Answer clickGroup(Desk& desk) {
  constexpr int pauseMilliseconds = 100;
  const long long first = newField58();
  probe::sleepMilliseconds(pauseMilliseconds);
  const long long second = newField58();
  Form without;
  without.setsGroup = false;
  const auto with = desk.click({});
  const auto plain = desk.click(without);
  const std::string own = pressedIn(desk.target.window);
  const bool isTime = first != 0 && second > first;
  const bool matters = probe::countThatBegin(with, own) != probe::countThatBegin(plain, own);
  return {isTime || !matters ? Verdict::refuted : Verdict::confirmed,
          Evidence()
              .add("field 58 of a new event", first)
              .add("of one 100 ms later", second)
              .addJson("set", probe::jsonList(with))
              .addJson("left alone", probe::jsonList(plain))};
}

Answer subtype(Desk& desk) {
  probe::giveFocus(desk.target.pid, desk.target.window);
  Form plain;
  plain.subtype = 0;
  const auto touch = desk.click({});
  const auto other = desk.click(plain);
  probe::post(desk.target.pid, probe::focusRecord(desk.target.window, false));
  const bool taken = probe::countThatBegin(touch, "press ") == 1;
  return {taken ? Verdict::confirmed : Verdict::notShown,
          Evidence()
              .addJson("subtype 3", probe::jsonList(touch))
              .addJson("subtype 0", probe::jsonList(other))};
}

Answer twoRoutes(Desk& desk) {
  Form both;
  both.publicly = true;
  Form publicOnly;
  publicOnly.privately = false;
  publicOnly.publicly = true;
  const std::string own = pressedIn(desk.target.window);
  const long long once = probe::countThatBegin(desk.click({}), own);
  const long long twice = probe::countThatBegin(desk.click(both), own);
  const long long publicly = probe::countThatBegin(desk.click(publicOnly), own);
  const Verdict verdict = once == 0 && publicly == 0 ? Verdict::notShown : verdictOf(twice == 1);
  return {verdict, Evidence()
                       .add("presses by the private route", once)
                       .add("by the public route", publicly)
                       .add("by both", twice)};
}

long long arrivedAt(Desk& desk, int milliseconds, int pairs) {
  desk.lines();
  for (int pair = 0; pair < pairs; ++pair) {
    for (const CGEventType type : {kCGEventLeftMouseDown, kCGEventLeftMouseUp}) {
      probe::postPointer(desk.target, type, {});
      if (milliseconds > 0) probe::sleepMilliseconds(milliseconds);
    }
  }
  const auto lines = desk.lines();
  return probe::countThatBegin(lines, "event 1 ") + probe::countThatBegin(lines, "event 2 ");
}

Answer interval(Desk& desk) {
  constexpr int pairs = 20;
  constexpr int prescribed = 12;
  Evidence evidence;
  std::map<int, long long> arrived;
  for (const int milliseconds : {0, 1, 4, prescribed}) {
    arrived[milliseconds] = arrivedAt(desk, milliseconds, pairs);
    evidence.add("of 40, every " + std::to_string(milliseconds) + " ms", arrived[milliseconds]);
  }
  return {verdictOf(arrived[prescribed] == 2 * pairs && arrived[0] < 2 * pairs), evidence};
}

Answer clickWithFocus(Desk& desk) {
  const auto without = desk.click({});
  probe::giveFocus(desk.target.pid, desk.target.window);
  const auto with = desk.click({});
  probe::post(desk.target.pid, probe::focusRecord(desk.target.window, false));
  return {verdictOf(probe::countThatBegin(with, "press ") == 1 &&
                    probe::countThatBegin(without, "press ") == 0),
          Evidence()
              .addJson("without focus", probe::jsonList(without))
              .addJson("with focus by record", probe::jsonList(with))};
}

Answer clickPriming(Desk& desk) {
  probe::giveFocus(desk.target.pid, desk.target.window);
  const auto without = desk.click({});
  desk.lines();
  probe::postPriming(desk.target, {});
  probe::postClick(desk.target, {});
  const auto with = desk.lines();
  probe::post(desk.target.pid, probe::focusRecord(desk.target.window, false));
  return {verdictOf(probe::countThatBegin(with, "press ") == 1 &&
                    probe::countThatBegin(without, "press ") == 0),
          Evidence()
              .addJson("without the four events", probe::jsonList(without))
              .addJson("with them", probe::jsonList(with))};
}

/// Whether the public setter does as well as the private one.
Answer privateSetter(Desk& desk) {
  Form publicly;
  publicly.setsPublicly = true;
  const auto set = desk.click({});
  const auto setPublicly = desk.click(publicly);
  const std::string own = pressedIn(desk.target.window);
  const Verdict verdict = probe::countThatBegin(set, own) == 0
                              ? Verdict::notShown
                              : verdictOf(probe::countThatBegin(setPublicly, own) == 0);
  return {verdict, Evidence()
                       .addJson("by the private setter", probe::jsonList(set))
                       .addJson("by the public one", probe::jsonList(setPublicly))};
}

/// What arrives of each input by each route, and with each of the two points.
Answer routes(Desk& desk) {
  const std::string window = " " + std::to_string(desk.target.window) + " ";
  Evidence evidence;
  bool holds = true;
  const auto arrived = [&](const char* input, const char* type, bool publicly, bool isGlobal,
                           bool isPrescribed, const auto& post) {
    Form form;
    form.privately = !publicly;
    form.publicly = publicly;
    form.pointIsGlobal = isGlobal;
    desk.lines();
    post(form);
    const auto count = probe::countThatBegin(desk.lines(), type + window);
    if (isPrescribed) holds = holds && count > 0;
    evidence.add(std::string(input) + (publicly ? ", public" : ", private") +
                     (isGlobal ? ", global point" : ", point in the window"),
                 count);
  };
  for (const bool publicly : {false, true}) {
    for (const bool isGlobal : {true, false}) {
      arrived("click", "event 1", publicly, isGlobal, !publicly && isGlobal,
              [&](const Form& form) { probe::postClick(desk.target, form); });
      // Whether a window is told of moves is its own affair.
      arrived("move", "event 5", publicly, isGlobal, false,
              [&](const Form& form) { probe::postPointer(desk.target, kCGEventMouseMoved, form); });
      arrived("scroll", "event 22", publicly, isGlobal, publicly && !isGlobal,
              [&](const Form& form) { probe::postScroll(desk.target, form); });
    }
  }
  return {verdictOf(holds), evidence};
}

const std::map<std::string, Answer (*)(Desk&)> questions = {
    {"post-to-process", postToProcess},
    {"window-location", windowLocation},
    {"target-window-field", targetWindow},
    {"click-group-field", clickGroup},
    {"touch-subtype", subtype},
    {"two-routes", twoRoutes},
    {"post-interval", interval},
    {"click-with-focus", clickWithFocus},
    {"click-priming", clickPriming},
    {"private-setter-alone", privateSetter},
    {"appkit-routes", routes},
};

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  const auto question = questions.find(assumption);
  if (question == questions.end()) return probe::notShown(assumption, "it is not asked here");
  if (!probe::privateFunctions().isComplete())
    return probe::notShown(assumption, "a private function is missing");
  if (!AXIsProcessTrusted()) return probe::notShown(assumption, "Accessibility is not granted");
  Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  const auto bounds = probe::windowBounds(receiver.window(0));
  if (!bounds) return probe::notShown(assumption, "the window list has no window of the receiver");
  const CGPoint inWindow{150, bounds->size.height - 100};
  Desk desk{receiver,
            {receiver.pid(),
             receiver.window(0),
             {bounds->origin.x + inWindow.x, bounds->origin.y + inWindow.y},
             inWindow},
            *bounds};
  const Answer answer = question->second(desk);
  return probe::answer(assumption, answer.verdict, answer.evidence);
}
