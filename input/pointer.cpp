#include "input/pointer.h"

#include <array>
#include <cstdint>
#include <vector>

#include "capture/window_image.h"
#include "input/chromium.h"
#include "input/context.h"
#include "input/focus.h"
#include "input/post.h"
#include "input/session.h"
#include "input/sky.h"
#include "main/globals.h"
#include "main/state_queries.h"
#include "platform/loop.h"
#include "platform/quartz.h"

namespace driver {

namespace {

using quartz::EventType;

constexpr std::uint64_t clickGroupCount = 1'000'000'000;
constexpr std::int64_t touchSubtype = 3;

/// What makes the window server deliver pointer events to one window without the user's pointer.
struct PointerTarget {
  platform::Pid pid = 0;
  TargetWindow window;
  std::int64_t clickGroup = 0;  // the same for all events of one input
  bool chromium = false;
};

/// A number for the click group of an input that begins now.
std::int64_t newClickGroup() {
  return static_cast<std::int64_t>(loop::uptimeNanoseconds() % clickGroupCount);
}

/// The point in the window's own space, its origin at the window's top left.
Point windowLocal(const TargetWindow& window, Point point) {
  return {point.x - window.bounds.x, point.y - window.bounds.y};
}

/// Sets one of the event's fields by the private setter, which is present. The public one refuses
/// some of them.
void setPrivateField(const quartz::Event& event, quartz::Field field, std::int64_t value) {
  Sky::setField()(event.get(), static_cast<std::uint32_t>(field), value);
}

/// Directs the event at the target: process, window and click group. All but the process have no
/// documented meaning; with them the window server takes the event to the window whatever lies over
/// it, and leaves the user's pointer where it is.
void address(const quartz::Event& event, const PointerTarget& target) {
  setPrivateField(event, quartz::Field::mouseSubtype, touchSubtype);
  setPrivateField(event, quartz::Field::targetProcess, target.pid);
  setPrivateField(event, quartz::Field::targetWindow, target.window.id);
  setPrivateField(event, quartz::Field::clickGroup, target.clickGroup);
  setPrivateField(event, quartz::Field::windowUnderPointer, target.window.id);
  setPrivateField(event, quartz::Field::windowThatCanHandle, target.window.id);
}

constexpr const char* functionsMissing = "private input functions are missing on this macOS";

// The application comes to a click some time after it has been posted; one that has lost its focus
// by then does not take it.
constexpr std::uint32_t clickFocusMicroseconds = 100'000;

constexpr std::uint32_t pressMicroseconds = 1'000;

// Short enough for the two to be one double click.
constexpr std::uint32_t betweenClicksMicroseconds = 80'000;

constexpr Point offScreen{-1, -1};

struct ClickStep {
  EventType type;
  bool located;  // at the point clicked, else off screen
  std::int64_t clickState;
  std::int64_t eventNumber;
  std::uint32_t delayMicroseconds;  // after posting
};

// A click off screen makes the window expect pointer input without hitting anything in it. It is a
// left one whatever follows: it is there for the window, not for what it shows.
constexpr std::array<ClickStep, 4> primingSteps = {{
    {EventType::mouseMoved, false, 0, 2, 15'000},
    {EventType::leftMouseDown, false, 1, 1, 1'000},
    {EventType::leftMouseUp, false, 1, 2, 100'000},
    {EventType::mouseMoved, true, 0, 2, 15'000},
}};

std::vector<ClickStep> clickSteps(std::int64_t count, bool right) {
  const EventType down = right ? EventType::rightMouseDown : EventType::leftMouseDown;
  const EventType up = right ? EventType::rightMouseUp : EventType::leftMouseUp;
  std::vector<ClickStep> steps(primingSteps.begin(), primingSteps.end());
  for (std::int64_t click = 1; click <= count; ++click) {
    steps.push_back({down, true, click, 3, pressMicroseconds});
    steps.push_back({up, true, click, 3, click < count ? betweenClicksMicroseconds : 0});
  }
  return steps;
}

/// The routes by which a step arrives. Nothing documents them; they are what each kind of
/// application was found to listen to.
Routes routesFor(const PointerTarget& target, const ClickStep& step, bool right) {
  if (!target.chromium) return {true, false};
  if (!step.located) return {true, true};
  return {right, !right};
}

void setWindowLocation(const quartz::Event& event, const PointerTarget& target,
                       const ClickStep& step, Point point) {
  Point location = offScreen;
  if (step.located) location = target.chromium ? windowLocal(target.window, point) : point;
  Sky::setWindowLocation()(event.get(), location.x, location.y);
}

bool goesDown(const ClickStep& step) {
  return step.type == EventType::leftMouseDown || step.type == EventType::rightMouseDown;
}

bool comesUp(const ClickStep& step) {
  return step.type == EventType::leftMouseUp || step.type == EventType::rightMouseUp;
}

/// The event of a step, for its target; none when it cannot be made.
std::optional<quartz::Event> createStep(const quartz::Source* source, const PointerTarget& target,
                                        const ClickStep& step, Point point, bool right) {
  const bool rightStep = right && step.located;
  auto event =
      quartz::createMouseEvent(source, step.type, step.located ? point : offScreen,
                               rightStep ? quartz::MouseButton::right : quartz::MouseButton::left);
  if (!event) return std::nullopt;
  quartz::setFlags(*event, 0);
  setPrivateField(*event, quartz::Field::mouseEventNumber, step.eventNumber);
  setPrivateField(*event, quartz::Field::clickState, step.clickState);
  setPrivateField(*event, quartz::Field::buttonNumber, rightStep ? 1 : 0);
  address(*event, target);
  setWindowLocation(*event, target, step, point);
  return event;
}

void postStep(const std::optional<quartz::Event>& event, const ClickStep& step, Routes routes,
              platform::Pid pid, std::optional<Press>& press) {
  if (goesDown(step)) {
    press->down(event, routes);
  } else if (comesUp(step)) {
    press->up(event, routes);
  } else {
    postTarget(event, pid, routes);
  }
}

/// Posts the whole sequence. The private entry points are present.
void postClicks(const PointerTarget& target, Point point, std::int64_t count, bool right) {
  // A source of its own: the state of buttons that a source keeps must begin with this click.
  const std::optional<quartz::Source> source = quartz::createSource();
  PointerTarget grouped = target;
  grouped.clickGroup = newClickGroup();
  std::optional<Press> press;  // from a step that goes down to the one that comes up
  for (const ClickStep& step : clickSteps(count, right)) {
    const auto event = createStep(source ? &*source : nullptr, grouped, step, point, right);
    if (goesDown(step)) press.emplace(target.pid);
    if (event) postStep(event, step, routesFor(target, step, right), target.pid, press);
    if (comesUp(step)) press.reset();
    if (event && step.delayMicroseconds != 0) loop::sleepMicroseconds(step.delayMicroseconds);
  }
}

// A motion asks less of an application than a click.
constexpr std::uint32_t motionFocusMicroseconds = 50'000;

constexpr std::int64_t motionEventNumber = 3;
constexpr std::int64_t motionClickState = 1;

std::optional<quartz::Event> createEvent(Point point, const std::optional<Scroll>& scroll) {
  if (scroll) return quartz::createScrollEvent(scroll->vertical, scroll->horizontal);
  const std::optional<quartz::Source>& source = globals().src;
  return quartz::createMouseEvent(source ? &*source : nullptr, quartz::EventType::mouseMoved, point,
                                  quartz::MouseButton::left);
}

std::string dragRefusal(bool chromium) {
  return chromium ? "Chromium background drag is unsupported: the renderer requires global "
                    "mouse-button state"
                  : "AppKit background drag is unsupported: native delivery raises the target "
                    "window";
}

void postMotion(const PointerTarget& target, Point point, const std::optional<Scroll>& scroll) {
  const std::optional<quartz::Event> event = createEvent(point, scroll);
  if (!event) return;
  quartz::setFlags(*event, 0);
  quartz::setLocation(*event, point);
  setPrivateField(*event, quartz::Field::mouseEventNumber, motionEventNumber);
  setPrivateField(*event, quartz::Field::clickState, motionClickState);
  address(*event, target);
  const bool inWindowSpace = target.chromium || scroll;
  const Point location = inWindowSpace ? windowLocal(target.window, point) : point;
  Sky::setWindowLocation()(event->get(), location.x, location.y);
  // Chromium takes scrolls by the private route and moves by the public one; AppKit the reverse.
  const bool privately = target.chromium == scroll.has_value();
  postTarget(event, target.pid, {privately, !privately});
}

// Most changes show within the first round, an animation or a page within three. What takes longer
// the caller sees in its next picture.
constexpr int watchRounds = 3;
constexpr std::uint32_t roundMicroseconds = 200'000;

/// What may change by an input.
struct Appearance {
  std::optional<platform::Bytes> image;
  std::string focusSignature;
};

bool changesFrom(const Appearance& before, platform::Pid pid, platform::WindowNumber window) {
  for (int round = 0; round < watchRounds; ++round) {
    loop::sleepMicroseconds(roundMicroseconds);
    const std::optional<platform::Bytes> image = windowImage(window);
    // Without two pictures to compare, nothing speaks against a change.
    if (!image || before.image != image) return true;
    if (focusSignature(pid) != before.focusSignature) return true;
  }
  return false;
}

}  // namespace

std::optional<std::string> backgroundClick(const workspace::Application& app,
                                           const TargetWindow& window, Point point,
                                           std::int64_t count, const std::string& button) {
  if (Sky::setWindowLocation() == nullptr) return functionsMissing;
  if (count < 1 || count > 2) return "unsupported click count " + std::to_string(count);
  const PointerFocus focus = beginPointerFocus(app.pid, window);
  if (focus == PointerFocus::unavailable) return "background target focus is unavailable";
  const PointerTarget target{app.pid, window, 0, isChromium(app)};
  // Asked after focus has been given, which is therefore given back in either case.
  const bool complete = Sky::postToPid() != nullptr && Sky::setField() != nullptr;
  if (complete) postClicks(target, point, count, button == "right");
  endPointerFocus(focus, clickFocusMicroseconds);
  return complete ? std::nullopt : std::optional<std::string>(functionsMissing);
}

std::optional<std::string> backgroundMotion(const workspace::Application& app,
                                            const TargetWindow& window, Point from,
                                            const std::optional<Point>& to,
                                            const std::optional<Scroll>& scroll) {
  if (Sky::setWindowLocation() == nullptr || Sky::setField() == nullptr ||
      Sky::postToPid() == nullptr) {
    return "private background pointer functions are missing on this macOS";
  }
  const bool chromium = isChromium(app);
  // Before focus is given: what is never tried must not disturb anybody.
  if (to) return dragRefusal(chromium);
  const PointerFocus focus = beginPointerFocus(app.pid, window);
  if (focus == PointerFocus::unavailable) return "background target focus is unavailable";
  postMotion({app.pid, window, newClickGroup(), chromium}, from, scroll);
  endPointerFocus(focus, motionFocusMicroseconds);
  return std::nullopt;
}

Reply background(const std::string& app, Point point, const SendAction& send) {
  if (!sessionUsable()) return lockedRefusal("the Mac is locked or not on console");
  const std::optional<workspace::Application> target = runningApp(app);
  if (!target || target->hidden) return refusal("target app is not running or is hidden");
  const std::optional<TargetWindow> window = windowAt(target->pid, point);
  if (!window) return refusal("no window of the app under the point");

  // Taken as late as can be: whatever changes by itself before the input is not its effect.
  Appearance before;
  before.image = windowImage(window->id);
  before.focusSignature = focusSignature(target->pid);
  if (const auto error = send(*target, *window, point)) return refusal(*error);
  const bool changed = changesFrom(before, target->pid, window->id);
  return {{"ok", true}, {"via", "background"}, {"changed", changed}, {"window", window->id}};
}

}  // namespace driver
