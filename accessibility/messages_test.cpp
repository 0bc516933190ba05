#include "accessibility/messages.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using platform::Function;
using platform::WireReadings;
using platform::WireSlot;

using Calls = std::vector<std::string>;

constexpr const char* messagesDesk = R"(
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20 help "H"
)";

Datum wireText(const std::string& text) {
  return Datum(Datum::List{pack(platform::ValueKind::text), Datum(text)});
}

/// A slot as text: its value, or its error.
std::string shown(const ax::Slot& slot) {
  if (!slot.value) return std::to_string(static_cast<int>(slot.error));
  const auto* text = slot.value->get<std::string>();
  return text != nullptr ? *text : "?";
}

Calls shown(const std::vector<ax::Slot>& slots) {
  Calls texts;
  for (const ax::Slot& slot : slots) texts.push_back(shown(slot));
  return texts;
}

/// What a batch of title, value and help gives when the application answers it like this.
Calls batchAnswered(const WireReadings& readings, Calls& calls) {
  TestMac mac(messagesDesk);
  Calls slots;
  calls = runInside(mac, [&] {
            const FixedAnswer answer(Function::axAttributes, pack(readings));
            slots = shown(messages::attributes(elementOf(mac, "Notes", "Send"),
                                               {"AXTitle", "AXValue", "AXHelp"}));
          }).calls;
  return slots;
}

TEST(messages_attribute, is_the_value_or_the_error) {
  TestMac mac(messagesDesk);
  runInside(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    const ax::Reading title = messages::attribute(send, "AXTitle");
    EXPECT_EQ(shown({title.value, title.outcome.error}), "Send");
    EXPECT_EQ(title.outcome.error, ax::Error::success);
    const ax::Reading value = messages::attribute(send, "AXValue");
    EXPECT_FALSE(value.value);
    EXPECT_EQ(value.outcome.error, ax::Error::noValue);
  });
}

TEST(messages_attribute, has_no_value_beside_an_error) {
  TestMac mac(messagesDesk);
  runInside(mac, [&] {
    const WireReadings readings{{{wireText("x"), ax::Error::success}}, {ax::Error::failure, false}};
    const FixedAnswer answer(Function::axAttribute, pack(readings));
    const ax::Reading reading = messages::attribute(elementOf(mac, "Notes", "Send"), "AXTitle");
    EXPECT_FALSE(reading.value);
    EXPECT_EQ(reading.outcome.error, ax::Error::failure);
  });
}

TEST(messages_attributes, are_one_slot_for_each_name_in_one_round_trip) {
  TestMac mac(messagesDesk);
  const Result run = runInside(mac, [&] {
    EXPECT_EQ(shown(messages::attributes(elementOf(mac, "Notes", "Send"),
                                         {"AXHelp", "AXTitle", "AXNothing", "AXValue"})),
              (Calls{"H", "Send", "-25205", "-25212"}));
  });
  EXPECT_EQ(run.calls, Calls{"ax.attributes"});
}

TEST(messages_attributes, of_an_element_that_has_gone_have_its_error_in_each_slot) {
  TestMac mac(messagesDesk, {"ax.attributes 1 error -25202"});
  const Result run = runInside(mac, [&] {
    EXPECT_EQ(shown(messages::attributes(elementOf(mac, "Notes", "Send"), {"AXTitle", "AXHelp"})),
              (Calls{"-25202", "-25202"}));
  });
  EXPECT_EQ(run.calls, Calls{"ax.attributes"});
}

TEST(messages_attributes, that_time_out_have_its_error_in_each_slot) {
  TestMac mac(messagesDesk, {"ax.attributes 1 hang"});
  const Result run = runInside(mac, [&] {
    EXPECT_EQ(shown(messages::attributes(elementOf(mac, "Notes", "Send"), {"AXTitle", "AXHelp"})),
              (Calls{"-25204", "-25204"}));
  });
  EXPECT_EQ(run.calls, Calls{"ax.attributes"});
}

TEST(messages_attributes, are_read_singly_where_they_cannot_be_had_together) {
  for (const char* code : {"-25200", "-25201", "-25204", "-25208"}) {
    TestMac mac(messagesDesk, {"ax.attributes 1+ error " + std::string(code)});
    const Result run = runInside(mac, [&] {
      EXPECT_EQ(shown(messages::attributes(elementOf(mac, "Notes", "Send"),
                                           {"AXTitle", "AXValue", "AXHelp", "AXNothing"})),
                (Calls{"Send", "-25212", "H", "-25205"}));
    });
    EXPECT_EQ(run.calls, (Calls{"ax.attributes", "ax.attribute", "ax.attribute", "ax.attribute",
                                "ax.attribute"}));
  }
}

TEST(messages_attributes, are_asked_for_singly_but_once) {
  TestMac mac(messagesDesk, {"ax.attributes 1+ error -25204", "ax.attribute 1+ error -25200"});
  const Result run = runInside(mac, [&] {
    EXPECT_EQ(shown(messages::attributes(elementOf(mac, "Notes", "Send"), {"AXTitle", "AXHelp"})),
              (Calls{"-25200", "-25200"}));
  });
  EXPECT_EQ(run.calls, (Calls{"ax.attributes", "ax.attribute", "ax.attribute"}));
}

TEST(messages_attributes, are_read_singly_where_a_slot_is_neither_value_nor_error) {
  Calls calls;
  EXPECT_EQ(batchAnswered({{WireSlot{}, WireSlot{}, WireSlot{wireText("batch")}}, {}}, calls),
            (Calls{"Send", "-25212", "batch"}));
  EXPECT_EQ(calls, (Calls{"ax.attribute", "ax.attribute"}));
}

TEST(messages_attributes, are_read_singly_where_slots_are_missing) {
  Calls calls;
  EXPECT_EQ(batchAnswered({{WireSlot{wireText("batch")}}, {}}, calls),
            (Calls{"batch", "-25212", "H"}));
  EXPECT_EQ(calls, (Calls{"ax.attribute", "ax.attribute"}));
}

TEST(messages_attributes, are_no_more_than_the_names) {
  Calls calls;
  EXPECT_EQ(batchAnswered({std::vector<WireSlot>(5, WireSlot{wireText("x")}), {}}, calls),
            (Calls{"x", "x", "x"}));
  EXPECT_EQ(calls, Calls{});
}

TEST(messages_attributes, that_come_with_an_error_of_the_message_are_read_singly) {
  Calls calls;
  const std::vector<WireSlot> batch(3, WireSlot{wireText("batch")});
  EXPECT_EQ(batchAnswered({batch, {ax::Error::failure, false}}, calls),
            (Calls{"Send", "-25212", "H"}));
  EXPECT_EQ(calls, (Calls{"ax.attribute", "ax.attribute", "ax.attribute"}));
}

TEST(messages_attributes, do_not_ask_again_for_an_error) {
  Calls calls;
  EXPECT_EQ(
      batchAnswered({std::vector<WireSlot>(3, WireSlot{Datum(), ax::Error::failure}), {}}, calls),
      (Calls{"-25200", "-25200", "-25200"}));
  EXPECT_EQ(calls, Calls{});
}

TEST(messages_action_names, are_none_beside_an_error) {
  TestMac mac(messagesDesk);
  runInside(mac, [&] {
    const platform::WireActionNames names{{"AXPress"}, {ax::Error::failure, false}};
    const FixedAnswer answer(Function::axActionNames, pack(names));
    EXPECT_EQ(messages::actionNames(elementOf(mac, "Notes", "Send")), Calls{});
  });
}

TEST(messages, have_well_formed_texts_whatever_an_application_holds) {
  TestMac mac(R"(
    app Notes pid 41
        window 7 "W" at 0,0 size 9x9
            AXButton "B" help "a\xFFz" description "\u{D800}"
)");
  runInside(mac, [&] {
    EXPECT_EQ(
        shown(messages::attributes(elementOf(mac, "Notes", "B"), {"AXHelp", "AXDescription"})),
        (Calls{"a\uFFFDz", "\uFFFD\uFFFD\uFFFD"}));
  });
}

TEST(windowNumber, is_the_windows) {
  TestMac mac(messagesDesk);
  runInside(mac, [&] {
    EXPECT_EQ(messages::windowNumber(elementOf(mac, "Notes", "Inbox")), 7U);
    EXPECT_EQ(messages::windowNumber(applicationOf(mac, "Notes")), std::nullopt);
  });
}

TEST(windowNumber, is_none_without_the_private_route) {
  TestMac mac(std::string(messagesDesk) + "    missing _AXUIElementGetWindow\n");
  const Result run = runInside(mac, [&] {
    EXPECT_EQ(messages::windowNumber(elementOf(mac, "Notes", "Inbox")), std::nullopt);
  });
  EXPECT_EQ(run.calls, (Calls{"loader.open-library", "loader.find-symbol"}));
}

TEST(setAttribute, gives_the_platforms_code) {
  TestMac mac(messagesDesk);
  runActing(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    EXPECT_EQ(messages::setAttribute(send, "AXHelp", ax::Value{std::string("new")}),
              ax::Error::success);
    EXPECT_EQ(messages::setAttribute(send, "AXHelp", ax::Value{true}), ax::Error::illegalArgument);
    EXPECT_EQ(messages::setAttribute(send, "AXValue", ax::Value{true}),
              ax::Error::attributeUnsupported);
  });
}

}  // namespace
}  // namespace driver
