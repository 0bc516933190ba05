#include "tests/oracle/pointer.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/oracle/commands.h"
#include "tests/oracle/focus.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"

namespace oracle {

namespace {

using platform::EventImage;

constexpr const char* functionsMissing = "private input functions are missing on this macOS";
constexpr const char* motionMissing =
    "private background pointer functions are missing on this macOS";
constexpr const char* noFocus = "background target focus is unavailable";

bool canPost(const Stage& stage) {
  return stage.has("SLEventPostToPid", "SkyLight") &&
         stage.has("SLEventSetIntegerValueField", "SkyLight");
}

/// Focus that a run gives for its input and takes back.
class BorrowedFocus {
 public:
  BorrowedFocus(Stage& stage, Pid pid, WindowNumber window)
      : stage_(stage), pid_(pid), window_(window) {
    const bool needed = foreground(stage) != pid && !isFocusHeld(stage, pid);
    given_ = needed && focus(stage, pid, window, true);
    failed_ = needed && !given_;
  }

  bool hasFailed() const { return failed_; }

  void takeBack(Microseconds pause) {
    if (!given_) return;
    stage_.wait(pause);
    if (!isFocusHeld(stage_, pid_) && foreground(stage_) != pid_) {
      focus(stage_, pid_, window_, false);
    }
  }

 private:
  Stage& stage_;
  Pid pid_;
  WindowNumber window_;
  bool given_ = false;
  bool failed_ = false;
};

struct ClickStep {
  std::uint32_t type;
  bool located;
  std::int64_t clickState;
  std::int64_t eventNumber;
  Microseconds delay;
};

std::vector<ClickStep> clickSteps(std::int64_t count, bool isRight) {
  std::vector<ClickStep> steps = {{5, false, 0, 2, 15'000},
                                  {1, false, 1, 1, 1'000},
                                  {2, false, 1, 2, 100'000},
                                  {5, true, 0, 2, 15'000}};
  for (std::int64_t k = 1; k <= count; ++k) {
    steps.push_back({isRight ? 3U : 1U, true, k, 3, 1'000});
    steps.push_back({isRight ? 4U : 2U, true, k, 3, k < count ? 80'000 : 0});
  }
  return steps;
}

/// The fields by which the window server routes an event to a window.
void addTarget(EventImage& event, Pid pid, WindowNumber window, std::int64_t group) {
  event.privateFields.push_back({7, 3});
  event.privateFields.push_back({40, pid});
  event.privateFields.push_back({51, window});
  event.privateFields.push_back({58, group});
  event.privateFields.push_back({91, window});
  event.privateFields.push_back({92, window});
}

/// What a click is about.
struct Click {
  Pid pid;
  TargetWindow window;
  Point point;
  bool isRight;
  bool chromium;
  std::int64_t group;
};

Point localTo(const TargetWindow& window, Point point) {
  return {point.x - window.frame.x, point.y - window.frame.y};
}

EventImage clickEvent(Stage& stage, const Click& click, const ClickStep& step) {
  EventImage event;
  event.identity = stage.newIdentity();
  event.type = step.type;
  event.location = step.located ? click.point : Point{-1, -1};
  event.flags = 0;
  event.fromSource = true;
  event.privateFields = {
      {0, step.eventNumber}, {1, step.clickState}, {3, step.located && click.isRight ? 1 : 0}};
  addTarget(event, click.pid, click.window.number, click.group);
  event.windowLocation = event.location;
  if (step.located && click.chromium) {
    event.windowLocation = localTo(click.window, click.point);
  }
  return event;
}

Routes clickRoutes(const Click& click, const ClickStep& step) {
  if (!click.chromium) return {true, false};
  if (!step.located) return {true, true};
  return {click.isRight, !click.isRight};
}

/// What tells whether an application's keyboard has changed.
std::vector<std::optional<simulator::AttributeValue>> focusSignature(Stage& stage, Pid pid) {
  std::vector<std::optional<simulator::AttributeValue>> parts;
  parts.push_back(stage.read({pid, 0}, "AXFocusedWindow").value);
  const auto element = stage.link({pid, 0}, "AXFocusedUIElement");
  parts.push_back(stage.read({pid, 0}, "AXFocusedUIElement").value);
  if (!element) return parts;
  auto range = stage.read(*element, "AXSelectedTextRange").value;
  if (range && !std::holds_alternative<ax::Range>(*range)) range.reset();
  parts.push_back(range);
  parts.push_back(stage.read(*element, "AXValue").value);
  return parts;
}

/// The common frame of the pointer commands: finds the window, sends, and looks for a change.
Json background(Stage& stage, const std::string& app, Point point,
                const std::function<std::string(Pid, const TargetWindow&)>& send) {
  if (!sessionUsable(stage)) {
    Json reply = refusal("the Mac is locked or not on console");
    reply["locked"] = true;
    return reply;
  }
  const auto pid = runningApp(stage, app);
  if (!pid || isHidden(stage, *pid)) return refusal("target app is not running or is hidden");
  const auto window = windowAt(stage, *pid, point);
  if (!window) return refusal("no window of the app under the point");
  const auto before = stage.look(window->number);
  const auto signature = focusSignature(stage, *pid);
  const std::string error = send(*pid, *window);
  if (!error.empty()) return refusal(error);
  bool changed = false;
  for (int round = 0; round < 3 && !changed; ++round) {
    stage.wait(200'000);
    const auto after = stage.look(window->number);
    changed = !before || !after || *before != *after || focusSignature(stage, *pid) != signature;
  }
  return {{"ok", true}, {"via", "background"}, {"changed", changed}, {"window", window->number}};
}

}  // namespace

std::string backgroundClick(Stage& stage, Pid pid, const TargetWindow& window, Point point,
                            std::int64_t count, bool isRight) {
  if (!stage.has("CGEventSetWindowLocation", "SkyLight")) return functionsMissing;
  if (count < 1 || count > 2) return "unsupported click count " + std::to_string(count);
  BorrowedFocus borrowed(stage, pid, window.number);
  if (borrowed.hasFailed()) return noFocus;
  const bool possible = canPost(stage);
  if (possible) {
    const Click click{pid, window, point, isRight, isChromium(stage, pid), stage.newIdentity()};
    for (const ClickStep& step : clickSteps(count, isRight)) {
      postPaced(stage, pid, clickEvent(stage, click, step), clickRoutes(click, step));
      stage.wait(step.delay);
    }
  }
  borrowed.takeBack(100'000);
  return possible ? "" : functionsMissing;
}

std::string backgroundMotion(Stage& stage, Pid pid, const TargetWindow& window, Point from,
                             const std::optional<Scroll>& scroll) {
  if (!stage.has("CGEventSetWindowLocation", "SkyLight") || !canPost(stage)) return motionMissing;
  const bool chromium = isChromium(stage, pid);
  BorrowedFocus borrowed(stage, pid, window.number);
  if (borrowed.hasFailed()) return noFocus;
  EventImage event;
  event.identity = stage.newIdentity();
  event.type = scroll ? 22 : 5;
  event.location = from;
  event.flags = 0;
  event.fromSource = !scroll;
  if (scroll) event.vertical = scroll->down;
  if (scroll) event.horizontal = scroll->across;
  event.privateFields = {{0, 3}, {1, 1}};
  addTarget(event, pid, window.number, stage.newIdentity());
  event.windowLocation = chromium || scroll ? localTo(window, from) : from;
  const bool isPrivate = chromium == scroll.has_value();
  postPaced(stage, pid, event, {isPrivate, !isPrivate});
  borrowed.takeBack(50'000);
  return "";
}

Json bgClick(Stage& stage, const Words& words) {
  require(words, 3, "bg-click <app> <x> <y> [left|right] [count]");
  const std::string button = words.size() < 4 ? "left" : words[3];
  if (button != "left" && button != "right") throw Failure{"unsupported mouse button"};
  const std::string text = words.size() < 5 ? "" : words[4];
  const auto count = wholeNumber(text, std::numeric_limits<std::int64_t>::min(),
                                 std::numeric_limits<std::int64_t>::max());
  const Point point = pointAt(words, 1);
  return background(stage, words[0], point, [&](Pid pid, const TargetWindow& window) {
    return backgroundClick(stage, pid, window, point, count.value_or(1), button == "right");
  });
}

namespace {

std::string motionUsage(const std::string& command) {
  return command + " <app> <x> <y> [dx|x2] [dy|y2]";
}

std::int32_t lines(const Words& words, std::size_t index) {
  const double amount = std::trunc(coordinate(words, index));
  const bool fits = amount >= std::numeric_limits<std::int32_t>::min() &&
                    amount <= std::numeric_limits<std::int32_t>::max();
  if (!fits) throw Failure{"scroll amount is out of range"};
  return static_cast<std::int32_t>(amount);
}

}  // namespace

Json bgScroll(Stage& stage, const Words& words) {
  require(words, 5, motionUsage("bg-scroll"));
  const Point point = pointAt(words, 1);
  return background(stage, words[0], point, [&](Pid pid, const TargetWindow& window) {
    pointAt(words, 3);  // both are numbers, or the first that is none is told
    const Scroll scroll{lines(words, 3), lines(words, 4)};
    return backgroundMotion(stage, pid, window, point, scroll);
  });
}

Json bgMove(Stage& stage, const Words& words) {
  require(words, 3, motionUsage("bg-move"));
  const Point point = pointAt(words, 1);
  return background(stage, words[0], point, [&](Pid pid, const TargetWindow& window) {
    return backgroundMotion(stage, pid, window, point, std::nullopt);
  });
}

Json bgDrag(Stage& stage, const Words& words) {
  require(words, 5, motionUsage("bg-drag"));
  const Point point = pointAt(words, 1);
  return background(stage, words[0], point, [&](Pid pid, const TargetWindow&) -> std::string {
    pointAt(words, 3);
    if (!stage.has("CGEventSetWindowLocation", "SkyLight") || !canPost(stage)) return motionMissing;
    if (isChromium(stage, pid)) {
      return "Chromium background drag is unsupported: the renderer requires global mouse-button "
             "state";
    }
    return "AppKit background drag is unsupported: native delivery raises the target window";
  });
}

Json focusRelease(Stage& stage, const Words& words) {
  const auto pid =
      words.size() == 2 ? wholeNumber(words[0], 1, std::numeric_limits<Pid>::max()) : std::nullopt;
  const auto window = words.size() == 2
                          ? wholeNumber(words[1], 0, std::numeric_limits<WindowNumber>::max())
                          : std::nullopt;
  if (!pid || !window) throw Failure{"invalid focus release"};
  const auto front = foreground(stage);
  if (front && *front != *pid) {
    focus(stage, static_cast<Pid>(*pid), static_cast<WindowNumber>(*window), false);
  }
  return {{"ok", true}};
}

}  // namespace oracle
