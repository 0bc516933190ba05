#include "platform/ax.h"

#include "platform/macos/standins/accessibility.h"
#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/strings.h"

namespace {

using standins::answerWith;
using standins::string;

constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;
constexpr std::uint64_t wholeTimeout = 6 * nanosecondsPerSecond;

class ax_messages : public standins::AdapterTest {};
using attribute = ax_messages;
using attributes = ax_messages;
using actionNames = ax_messages;
using elementAt = ax_messages;
using perform = ax_messages;
using setAttribute = ax_messages;
using trusted = ax_messages;

// The outcome of one read that ends with this error after this time.
ax::Outcome outcomeOf(AXError error, std::uint64_t nanoseconds) {
  answerWith({.error = error, .nanoseconds = nanoseconds});
  return ax::attribute(ax::application(40), "AXTitle").outcome;
}

}  // namespace

TEST_F(ax_messages, an_application_element_knows_its_process) {
  EXPECT_EQ(ax::pid(ax::application(40)), 40);
  EXPECT_EQ(standins::takeCalls(), Calls{});
}

TEST_F(attribute, reads_one_value) {
  answerWith({.value = string(u"Inbox")});
  const ax::Reading reading = ax::attribute(ax::application(40), "AXTitle");
  EXPECT_EQ(*reading.value.value().get<std::string>(), "Inbox");
  EXPECT_EQ(reading.outcome.error, ax::Error::success);
  EXPECT_FALSE(reading.outcome.timedOut);
  EXPECT_EQ(standins::takeCalls(), Calls{"read \"AXTitle\" of application of 40"});
}

TEST_F(attribute, reads_an_element_that_outlives_the_reading) {
  answerWith({.value = standins::element(40, "window")});
  const std::optional<ax::Value> value = ax::attribute(ax::application(40), "AXWindow").value;
  EXPECT_EQ(ax::pid(*value->get<ax::Element>()), 40);
}

TEST_F(attribute, gives_the_error_of_the_message) {
  answerWith({.error = kAXErrorAttributeUnsupported, .value = string(u"unseen")});
  const ax::Reading reading = ax::attribute(ax::application(40), "AXTitle");
  EXPECT_FALSE(reading.value);
  EXPECT_EQ(reading.outcome.error, ax::Error::attributeUnsupported);
}

TEST_F(attribute, takes_success_without_an_object_for_an_absent_value) {
  answerWith({});
  const ax::Reading reading = ax::attribute(ax::application(40), "AXTitle");
  EXPECT_FALSE(reading.value);
  EXPECT_EQ(reading.outcome.error, ax::Error::success);
}

TEST_F(attribute, takes_a_null_object_for_no_value) {
  answerWith({.value = standins::null()});
  const ax::Reading reading = ax::attribute(ax::application(40), "AXTitle");
  EXPECT_FALSE(reading.value);
  EXPECT_EQ(reading.outcome.error, ax::Error::noValue);
}

TEST_F(ax_messages, every_message_has_a_time_out_of_six_seconds) {
  outcomeOf(kAXErrorSuccess, 0);
  EXPECT_EQ(standins::messagingTimeoutSeconds(), 6);
}

TEST_F(ax_messages, a_message_timed_out_when_it_failed_after_the_whole_time) {
  const ax::Outcome outcome = outcomeOf(kAXErrorCannotComplete, wholeTimeout);
  EXPECT_TRUE(outcome.timedOut);
  EXPECT_EQ(outcome.error, ax::Error::cannotComplete);
}

TEST_F(ax_messages, a_message_that_failed_early_or_for_another_reason_did_not_time_out) {
  EXPECT_FALSE(outcomeOf(kAXErrorCannotComplete, wholeTimeout / 2).timedOut);
  EXPECT_FALSE(outcomeOf(kAXErrorFailure, wholeTimeout).timedOut);
  EXPECT_FALSE(outcomeOf(kAXErrorSuccess, wholeTimeout).timedOut);
}

TEST_F(attributes, reads_one_slot_for_each_name_in_one_message) {
  answerWith({.value = standins::array({string(u"AXButton"), standins::null(),
                                        standins::boxed(kAXErrorInvalidUIElement),
                                        standins::boxedIllegal()})});
  const ax::Readings readings =
      ax::attributes(ax::application(40), {"AXRole", "AXTitle", "AXChildren", "AXHelp"});
  EXPECT_EQ(standins::takeCalls(),
            Calls{"read [ \"AXRole\" \"AXTitle\" \"AXChildren\" \"AXHelp\" ] of "
                  "application of 40"});
  ASSERT_EQ(readings.slots.size(), 4u);
  EXPECT_EQ(*readings.slots[0].value.value().get<std::string>(), "AXButton");
  EXPECT_EQ(readings.slots[1].error, ax::Error::noValue);
  EXPECT_EQ(readings.slots[2].error, ax::Error::invalidElement);
  EXPECT_EQ(readings.slots[3].error, ax::Error::success);
  for (std::size_t i = 1; i < 4; ++i) EXPECT_FALSE(readings.slots[i].value) << i;
}

TEST_F(attributes, leaves_absent_what_the_answer_is_too_short_for) {
  answerWith({.value = standins::array({string(u"AXButton")})});
  const ax::Readings readings = ax::attributes(ax::application(40), {"AXRole", "AXTitle"});
  ASSERT_EQ(readings.slots.size(), 2u);
  EXPECT_TRUE(readings.slots[0].value);
  EXPECT_FALSE(readings.slots[1].value);
  EXPECT_EQ(readings.slots[1].error, ax::Error::success);
}

TEST_F(attributes, leaves_all_absent_when_success_brings_no_answer) {
  answerWith({});
  const ax::Readings readings = ax::attributes(ax::application(40), {"AXRole", "AXTitle"});
  ASSERT_EQ(readings.slots.size(), 2u);
  EXPECT_FALSE(readings.slots[0].value);
  EXPECT_FALSE(readings.slots[1].value);
}

TEST_F(attributes, has_no_slots_when_the_message_failed) {
  answerWith({.error = kAXErrorCannotComplete, .nanoseconds = wholeTimeout});
  const ax::Readings readings = ax::attributes(ax::application(40), {"AXRole", "AXTitle"});
  EXPECT_TRUE(readings.slots.empty());
  EXPECT_TRUE(readings.outcome.timedOut);
}

TEST_F(actionNames, gives_the_names_in_order) {
  answerWith({.value = standins::array({string(u"AXPress"), string(u"AXShowMenu")})});
  const ax::ActionNames actions = ax::actionNames(ax::application(40));
  EXPECT_EQ(actions.names, (std::vector<std::string>{"AXPress", "AXShowMenu"}));
  EXPECT_EQ(standins::takeCalls(), Calls{"read actions of application of 40"});
}

TEST_F(actionNames, skips_what_is_no_name) {
  answerWith({.value = standins::array({standins::null(), string(u"AXPress")})});
  EXPECT_EQ(ax::actionNames(ax::application(40)).names, std::vector<std::string>{"AXPress"});
}

TEST_F(actionNames, are_none_without_an_answer_or_after_an_error) {
  answerWith({});
  EXPECT_TRUE(ax::actionNames(ax::application(40)).names.empty());
  answerWith({.error = kAXErrorAPIDisabled});
  const ax::ActionNames refused = ax::actionNames(ax::application(40));
  EXPECT_TRUE(refused.names.empty());
  EXPECT_EQ(refused.outcome.error, ax::Error::apiDisabled);
}

TEST_F(elementAt, gives_what_lies_at_the_point) {
  answerWith({.value = standins::element(40, "button")});
  const ax::Hit hit = ax::elementAt(ax::application(40), {10.5, -20});
  EXPECT_EQ(ax::pid(hit.element.value()), 40);
  EXPECT_EQ(hit.outcome.error, ax::Error::success);
  EXPECT_EQ(standins::takeCalls(), Calls{"find 10.500000 -20.000000 in application of 40"});
}

TEST_F(elementAt, gives_none_where_nothing_is) {
  answerWith({.error = kAXErrorNoValue});
  const ax::Hit hit = ax::elementAt(ax::application(40), {1, 2});
  EXPECT_FALSE(hit.element);
  EXPECT_EQ(hit.outcome.error, ax::Error::noValue);
}

TEST_F(elementAt, takes_success_without_an_element_for_none) {
  answerWith({});
  EXPECT_FALSE(ax::elementAt(ax::application(40), {1, 2}).element);
}

TEST_F(perform, names_the_action_and_gives_the_platform_s_code) {
  answerWith({.error = kAXErrorCannotComplete, .nanoseconds = wholeTimeout});
  const ax::Outcome outcome = ax::perform(ax::application(40), "AXPress");
  EXPECT_EQ(outcome.error, ax::Error::cannotComplete);
  EXPECT_TRUE(outcome.timedOut);
  EXPECT_EQ(standins::takeCalls(), Calls{"perform \"AXPress\" of application of 40"});
}

TEST_F(setAttribute, writes_the_value) {
  answerWith({});
  const ax::Outcome outcome =
      ax::setAttribute(ax::application(40), "AXSelectedTextRange", {ax::Range{2, 3}});
  EXPECT_EQ(outcome.error, ax::Error::success);
  EXPECT_EQ(standins::takeCalls(),
            Calls{"write range 2 3 to \"AXSelectedTextRange\" of application of 40"});
}

TEST_F(setAttribute, gives_the_platform_s_code) {
  answerWith({.error = kAXErrorCannotComplete, .nanoseconds = wholeTimeout});
  const ax::Outcome outcome = ax::setAttribute(ax::application(40), "AXValue", {true});
  EXPECT_EQ(outcome.error, ax::Error::cannotComplete);
  EXPECT_TRUE(outcome.timedOut);
}

TEST_F(ax_messages, equal_elements_and_equal_values_have_equal_hashes) {
  EXPECT_EQ(ax::hash(ax::application(40)), ax::hash(ax::application(40)));
  EXPECT_NE(ax::hash(ax::application(40)), ax::hash(ax::application(41)));
  EXPECT_EQ(ax::hash(ax::Value{std::string("x")}), CFHash(CFSTR("x")));
  EXPECT_EQ(ax::hash(ax::Value{ax::application(40)}), ax::hash(ax::application(40)));
  EXPECT_NE(ax::hash(ax::Value{std::int64_t{1}}), ax::hash(ax::Value{std::int64_t{2}}));
}

TEST_F(trusted, tells_what_the_system_says) {
  standins::setTrusted(true);
  EXPECT_TRUE(ax::trusted());
  standins::setTrusted(false);
  EXPECT_FALSE(ax::trusted());
}
