#include "tests/support/planted_click.h"

#include "simulator/input/posted_pointer.h"
#include "simulator/text/parse.h"

namespace testing_support {

using quartz::EventType;
using quartz::Field;
using simulator::Route;

namespace {

constexpr const char* desk = R"(
    app Browser pid 40 frontmost
        window 5 "Start" at 0,0 size 50x50
    app Notes pid 41
        window 7 "Inbox" at 100,100 size 200x200
            AXCheckBox "Done" at 110,110 size 50x50 press: toggle right: toggle
        window 8 "Away" at 100,100 size 200x200 off-screen
    app Chat pid 42 chromium
        window 9 "Chat" at 300,100 size 200x200
            AXCheckBox "Done" at 310,110 size 50x50 press: toggle right: toggle
)";

}  // namespace

Click::Click(bool chromium, bool right, int count)
    : pid_(chromium ? 42 : 41), chromium_(chromium), right_(right) {
  mac_.world = simulator::parseWorld(desk);
  target().focusByRecord = chromium ? 9 : 7;
  add(EventType::mouseMoved, false, 0, 2);
  add(EventType::leftMouseDown, false, 1, 1);
  add(EventType::leftMouseUp, false, 1, 2);
  add(EventType::mouseMoved, true, 0, 2);
  for (int state = 1; state <= count; ++state) {
    add(right ? EventType::rightMouseDown : EventType::leftMouseDown, true, state, 3);
    add(right ? EventType::rightMouseUp : EventType::leftMouseUp, true, state, 3);
  }
}

simulator::Application& Click::target() { return *findApplication(mac_.world, pid_); }

std::vector<std::string> Click::outcomes() {
  for (const Step& step : steps_) {
    mac_.now += step.delay;
    if (step.privately) deliver(mac_, pid_, step.event, Route::privateRoute);
    if (step.publicly) deliver(mac_, pid_, step.event, Route::publicRoute);
  }
  std::vector<std::string> outcomes;
  for (const auto& entry : mac_.journal) {
    outcomes.push_back((*entry.landed ? "" : "LOST: ") + entry.outcome);
  }
  return outcomes;
}

std::string Click::outcome(std::size_t index) { return outcomes().at(index); }

void Click::add(EventType type, bool located, std::int64_t state, std::int64_t number) {
  Step step;
  platform::EventImage& event = step.event;
  event.identity = static_cast<std::int64_t>(steps_.size()) + 1;
  event.type = static_cast<std::uint32_t>(type);
  event.flags = 0;
  const platform::Point point = chromium_ ? platform::Point{320, 120} : platform::Point{120, 120};
  event.location = located ? point : platform::Point{-1, -1};
  event.windowLocation = located && chromium_ ? platform::Point{20, 20} : event.location;
  const std::int64_t window = chromium_ ? 9 : 7;
  setField(event, Field::mouseEventNumber, number);
  setField(event, Field::clickState, state);
  setField(event, Field::buttonNumber, right_ && located ? 1 : 0);
  setField(event, Field::mouseSubtype, 3);
  setField(event, Field::targetProcess, pid_);
  setField(event, Field::targetWindow, window);
  setField(event, Field::clickGroup, 77);
  setField(event, Field::windowUnderPointer, window);
  setField(event, Field::windowThatCanHandle, window);
  step.privately = !chromium_ || !located || right_;
  step.publicly = chromium_ && (!located || !right_);
  steps_.push_back(std::move(step));
}

void setField(platform::EventImage& event, Field field, std::int64_t value) {
  event.privateFields.push_back({static_cast<std::uint32_t>(field), value});
}

}  // namespace testing_support
