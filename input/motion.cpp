#include "input/motion.h"

#include "input/chromium.h"
#include "input/pointer_event.h"
#include "input/pointer_focus.h"
#include "input/post.h"
#include "input/sky.h"
#include "main/globals.h"
#include "platform/quartz.h"

namespace driver {

namespace {

constexpr std::uint32_t focusPauseMicroseconds = 50'000;
constexpr std::int64_t eventNumber = 3;
constexpr std::int64_t clickState = 1;

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
  setPrivateField(*event, quartz::Field::mouseEventNumber, eventNumber);
  setPrivateField(*event, quartz::Field::clickState, clickState);
  address(*event, target);
  const bool inWindowSpace = target.chromium || scroll;
  const Point location = inWindowSpace ? windowLocal(target.window, point) : point;
  Sky::setWindowLocation()(event->get(), location.x, location.y);
  // Chromium takes scrolls by the private route and moves by the public one; AppKit the reverse.
  const bool privately = target.chromium == scroll.has_value();
  postTarget(event, target.pid, {privately, !privately});
}

}  // namespace

std::optional<std::string> backgroundMotion(const workspace::Application& app,
                                            const TargetWindow& window, Point from,
                                            const std::optional<Point>& to,
                                            const std::optional<Scroll>& scroll) {
  if (Sky::setWindowLocation() == nullptr || Sky::setField() == nullptr ||
      Sky::postToPid() == nullptr) {
    return "private background pointer functions are missing on this macOS";
  }
  const bool chromium = isChromium(app);
  if (to) return dragRefusal(chromium);
  const PointerFocus focus = beginPointerFocus(app.pid, window);
  if (focus == PointerFocus::unavailable) return "background target focus is unavailable";
  postMotion({app.pid, window, newClickGroup(), chromium}, from, scroll);
  endPointerFocus(focus, focusPauseMicroseconds);
  return std::nullopt;
}

}  // namespace driver
