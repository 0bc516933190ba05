#include "platform/quartz.h"

#include <cmath>

#include "platform/macos/standins/events.h"
#include "platform/macos/standins/fixture.h"

namespace {

class quartz_events : public standins::AdapterTest {};
using setText = quartz_events;
using secondsSinceLast = quartz_events;

std::string describe(const std::optional<quartz::Event>& event) {
  return standins::describe(event.value().get());
}

}  // namespace

TEST_F(quartz_events, a_source_has_the_state_of_the_hardware) {
  EXPECT_EQ(standins::describe(quartz::createSource().value().get()), "source 1");
}

TEST_F(quartz_events, an_empty_event_carries_the_pointer_s_location) {
  standins::setPointer({12, 34});
  EXPECT_EQ(quartz::location(quartz::createEvent().value()), (platform::Point{12, 34}));
  EXPECT_EQ(describe(quartz::createEvent()), "empty null at 12,34 flags 256");
}

TEST_F(quartz_events, a_mouse_event_has_what_it_was_created_with) {
  const std::optional<quartz::Source> source = quartz::createSource();
  EXPECT_EQ(describe(quartz::createMouseEvent(&*source, quartz::EventType::mouseMoved, {5, 6},
                                              quartz::MouseButton::left)),
            "mouse 5 button 0 source 1 at 5,6 flags 256");
  EXPECT_EQ(describe(quartz::createMouseEvent(nullptr, quartz::EventType::rightMouseUp, {5, 6},
                                              quartz::MouseButton::right)),
            "mouse 4 button 1 null at 5,6 flags 256");
}

TEST_F(quartz_events, a_scroll_event_turns_two_wheels_by_lines) {
  standins::setPointer({0, 0});
  EXPECT_EQ(describe(quartz::createScrollEvent(-3, 2)),
            "scroll unit 1 wheels 2 -3 2 0 null at 0,0 flags 256");
}

TEST_F(quartz_events, a_key_event_has_no_source) {
  standins::setPointer({0, 0});
  EXPECT_EQ(describe(quartz::createKeyboardEvent(36, true)), "key 36 down null at 0,0 flags 256");
  EXPECT_EQ(describe(quartz::createKeyboardEvent(0, false)), "key 0 up null at 0,0 flags 256");
}

TEST_F(setText, has_a_key_event_type_any_text) {
  standins::setPointer({0, 0});
  const std::optional<quartz::Event> event = quartz::createKeyboardEvent(0, true);
  quartz::setFlags(*event, 0x120000);
  quartz::setText(*event, u"\u00e9\U0001F600");
  EXPECT_EQ(describe(event), "key 0 down null at 0,0 flags 1179648 text \u00e9\U0001F600");
}

TEST_F(secondsSinceLast, asks_for_what_the_hardware_did) {
  standins::setSecondsSinceLast(kCGEventFlagsChanged, 1.5);
  standins::setSecondsSinceLast(kCGEventKeyDown, HUGE_VAL);
  EXPECT_EQ(quartz::secondsSinceLast(quartz::EventType::flagsChanged), 1.5);
  EXPECT_EQ(quartz::secondsSinceLast(quartz::EventType::keyDown), HUGE_VAL);
}

TEST_F(quartz_events, setters_change_the_event_and_posting_sends_it) {
  const quartz::Event event = quartz::createEvent().value();
  quartz::setLocation(event, {-1, -1});
  quartz::setFlags(event, 0);
  quartz::setField(event, quartz::Field::sourceUserData, 0x5A545256);
  quartz::setField(event, quartz::Field::clickGroup, -7);
  quartz::postToPid(40, event);
  EXPECT_EQ(standins::takeCalls(), Calls{"post to 40: empty null at -1,-1 42=1515475542 58=-7"});
}

TEST_F(quartz_events, what_the_system_refuses_is_absent) {
  standins::refuseEvents(true);
  EXPECT_FALSE(quartz::createSource());
  EXPECT_FALSE(quartz::createEvent());
  EXPECT_FALSE(quartz::createMouseEvent(nullptr, quartz::EventType::mouseMoved, {},
                                        quartz::MouseButton::left));
  EXPECT_FALSE(quartz::createScrollEvent(1, 1));
  EXPECT_FALSE(quartz::createKeyboardEvent(0, true));
  standins::refuseEvents(false);
}
