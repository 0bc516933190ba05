#include "input/click.h"

#include <array>
#include <vector>

#include "input/chromium.h"
#include "input/pointer_event.h"
#include "input/pointer_focus.h"
#include "input/post.h"
#include "input/sky.h"
#include "platform/loop.h"
#include "platform/quartz.h"

namespace driver {

namespace {

using quartz::EventType;

constexpr const char* functionsMissing = "private input functions are missing on this macOS";
constexpr std::uint32_t focusPauseMicroseconds = 100'000;
constexpr std::uint32_t pressMicroseconds = 1'000;
constexpr std::uint32_t betweenClicksMicroseconds = 80'000;
constexpr Point offScreen{-1, -1};

struct ClickStep {
  EventType type;
  bool located;  // at the point clicked, else off screen
  std::int64_t clickState;
  std::int64_t eventNumber;
  std::uint32_t delayMicroseconds;  // after posting
};

// A click off screen makes the window expect pointer input without hitting anything in it.
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

void postStep(const quartz::Source* source, const PointerTarget& target, const ClickStep& step,
              Point point, bool right) {
  const bool rightStep = right && step.located;
  const auto event =
      quartz::createMouseEvent(source, step.type, step.located ? point : offScreen,
                               rightStep ? quartz::MouseButton::right : quartz::MouseButton::left);
  if (!event) return;
  quartz::setFlags(*event, 0);
  setPrivateField(*event, quartz::Field::mouseEventNumber, step.eventNumber);
  setPrivateField(*event, quartz::Field::clickState, step.clickState);
  setPrivateField(*event, quartz::Field::buttonNumber, rightStep ? 1 : 0);
  address(*event, target);
  setWindowLocation(*event, target, step, point);
  postTarget(event, target.pid, routesFor(target, step, right));
  if (step.delayMicroseconds != 0) loop::sleepMicroseconds(step.delayMicroseconds);
}

/// Posts the whole sequence. The private entry points are present.
void postClicks(const PointerTarget& target, Point point, std::int64_t count, bool right) {
  const std::optional<quartz::Source> source = quartz::createSource();
  PointerTarget grouped = target;
  grouped.clickGroup = newClickGroup();
  for (const ClickStep& step : clickSteps(count, right)) {
    postStep(source ? &*source : nullptr, grouped, step, point, right);
  }
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
  const bool complete = Sky::postToPid() != nullptr && Sky::setField() != nullptr;
  if (complete) postClicks(target, point, count, button == "right");
  endPointerFocus(focus, focusPauseMicroseconds);
  return complete ? std::nullopt : std::optional<std::string>(functionsMissing);
}

}  // namespace driver
