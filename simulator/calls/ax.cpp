#include <array>
#include <cstdio>

#include "platform/value_codec.h"
#include "simulator/calls/calls.h"
#include "simulator/world/actions.h"
#include "simulator/world/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/presses.h"

namespace simulator::calls {

using driver::Datum;
using driver::pack;
using platform::ElementReference;
using platform::tagged;
using platform::ValueKind;

namespace {

/// What `_AXUIElementGetWindow` gives for an element that is in no window.
constexpr std::int64_t illegalArgument = -25201;

Datum packElement(Pid pid, ElementId id) {
  return tagged(ValueKind::element, pack(ElementReference{pid, id}));
}

struct Packer {
  Pid pid;

  Datum operator()(const Opaque& value) const {
    return tagged(ValueKind::opaque, pack(value.hash));
  }
  Datum operator()(ElementLink value) const { return packElement(pid, value.id); }
  Datum operator()(const std::vector<ElementId>& ids) const {
    Datum::List list;
    list.reserve(ids.size());
    for (const ElementId id : ids) list.push_back(packElement(pid, id));
    return tagged(ValueKind::list, Datum(std::move(list)));
  }
  Datum operator()(std::string&& value) const {
    return tagged(ValueKind::text, pack(std::move(value)));
  }
  template <class T>
  Datum operator()(const T& value) const {
    return platform::packPlain(value);
  }
};

/// Nobody writes opaque values or lists.
AttributeValue unpackWritten(const Datum& datum) {
  const platform::Tagged parts(datum);
  if (parts.kind == ValueKind::element) {
    return ElementLink{driver::unpack<ElementReference>(parts.payload()).id};
  }
  if (auto plain = platform::unpackPlain<AttributeValue>(parts)) return std::move(*plain);
  throw driver::MalformedDatum();
}

/// Whether a message reaches its application and is answered, and when.
struct Message {
  Application* application = nullptr;  // null: it is not answered
  ax::Outcome outcome;
  Microseconds delay = 0;
};

Message send(Mac& mac, Pid pid) {
  if (!mac.world.accessibilityAllowed) return {nullptr, {ax::Error::apiDisabled, false}, 0};
  Application* application = findApplication(mac.world, pid);
  if (application == nullptr) return {nullptr, {ax::Error::cannotComplete, false}, 0};
  // The platform gives up, whether or not the application would answer later.
  if (application->hangs || application->answerDelay >= messagingTimeout) {
    return {nullptr, {ax::Error::cannotComplete, true}, messagingTimeout};
  }
  return {application, {}, application->answerDelay};
}

platform::WireSlot readSlot(const Mac& mac, Application& application, ElementId id,
                            const std::string& name) {
  AttributeResult result = readAttribute(mac.world, application, id, name, mac.now);
  if (name == "AXChildren") afterChildrenWereRead(application, id);
  if (!result.value) return {Datum(), result.error};
  return {std::visit(Packer{application.pid}, *std::move(result.value)), ax::Error::success};
}

bool gone(const World& world, const Application& application, ElementId id) {
  const Element* element = findElement(application, id);
  return id != 0 && (element == nullptr || !isThere(world, application, *element));
}

/// Why nothing came of what was asked of an element, as people read it.
std::string whyLost(const ax::Outcome& outcome) {
  if (outcome.timedOut) return "the application did not answer in time";
  switch (outcome.error) {
    case ax::Error::apiDisabled:
      return "accessibility is denied";
    case ax::Error::cannotComplete:
      return "there is no such application";
    case ax::Error::invalidElement:
      return "the element is gone";
    case ax::Error::attributeUnsupported:
      return "it cannot be written there";
    case ax::Error::illegalArgument:
      return "the value is of another kind";
    default:
      return "refused with " + std::to_string(static_cast<std::int32_t>(outcome.error));
  }
}

/// An application may say that it has no such attribute, and do what it asks for.
bool obeysAllTheSame(const Message& message, ElementId id, const std::string& name) {
  const bool enables = name == "AXManualAccessibility" || name == "AXEnhancedUserInterface";
  return message.application != nullptr && message.application->rejectsEnabling && id == 0 &&
         enables && message.outcome.error == ax::Error::attributeUnsupported;
}

/// What the journal calls the element of a message that arrives; none for the application itself.
std::optional<ElementName> nameIn(const Message& message, ElementId id) {
  const Element* element =
      message.application == nullptr ? nullptr : findElement(*message.application, id);
  if (element == nullptr) return std::nullopt;
  return elementName(*element);
}

WindowNumber windowOf(const std::optional<ElementName>& element) {
  return element ? element->window : 0;
}

std::string numberText(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.15g", value);
  return text.data();
}

/// A value that is written, as the journal shows it.
struct ValueText {
  const Application* application;  // may be null

  std::string operator()(const Opaque& /*value*/) const { return "an object"; }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return numberText(value); }
  std::string operator()(ElementLink value) const {
    const Element* element = application == nullptr ? nullptr : findElement(*application, value.id);
    return element == nullptr ? "an element" : described(*element);
  }
  std::string operator()(const std::vector<ElementId>& value) const {
    return std::to_string(value.size()) + " elements";
  }
  std::string operator()(Point value) const {
    return numberText(value.x) + "," + numberText(value.y);
  }
  std::string operator()(Size value) const {
    return numberText(value.width) + "x" + numberText(value.height);
  }
  std::string operator()(const Rect& value) const {
    return (*this)(Point{value.x, value.y}) + " " + (*this)(Size{value.width, value.height});
  }
  std::string operator()(const ax::Range& value) const {
    return std::to_string(value.location) + "+" + std::to_string(value.length);
  }
};

/// What came of a write that landed: what the field holds of a text that came to it at once.
std::string outcomeOfWrite(const Message& message, ElementId id, const std::string& name,
                           const AttributeValue& value) {
  const Element* element = findElement(*message.application, id);
  const auto* text = std::get_if<std::string>(&value);
  if (element == nullptr || text == nullptr) return "";
  const Habits& habits = habitsOf(*message.application, id);
  if (habits.delay > 0) return "comes later";
  return isFieldAttribute(*element, name) ? heldAfter(*element, *text) : "";
}

}  // namespace

Answer axAttribute(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto element = arguments.get<ElementReference>(0);
  const Message message = send(mac, element.pid);
  platform::WireReadings readings{{}, message.outcome};
  if (message.application != nullptr) {
    readings.slots.push_back(readSlot(mac, *message.application, element.id, arguments.text(1)));
    readings.outcome.error = readings.slots[0].error;
  }
  return {pack(std::move(readings)), message.delay};
}

Answer axAttributes(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto element = arguments.get<ElementReference>(0);
  const Message message = send(mac, element.pid);
  platform::WireReadings readings{{}, message.outcome};
  if (message.application != nullptr && gone(mac.world, *message.application, element.id)) {
    readings.outcome.error = ax::Error::invalidElement;
  } else if (message.application != nullptr) {
    const Datum::List& names = arguments.borrowed<Datum::List>(1);
    readings.slots.reserve(names.size());
    for (const Datum& name : names) {
      readings.slots.push_back(readSlot(mac, *message.application, element.id,
                                        driver::datum_detail::as<std::string>(name)));
    }
  }
  return {pack(std::move(readings)), message.delay};
}

Answer axActionNames(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto element = arguments.get<ElementReference>(0);
  const Message message = send(mac, element.pid);
  platform::WireActionNames result{{}, message.outcome};
  if (message.application != nullptr) {
    auto names = actionNames(*message.application, element.id);
    if (names && !gone(mac.world, *message.application, element.id)) {
      result.names = std::move(*names);
    } else {
      result.outcome.error = ax::Error::invalidElement;
    }
  }
  return {pack(result), message.delay};
}

Answer axElementAt(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto element = arguments.get<ElementReference>(0);
  const Message message = send(mac, element.pid);
  platform::WireHit hit{std::nullopt, message.outcome};
  if (message.application != nullptr) {
    const ElementId id =
        elementAtPoint(mac.world, *message.application, arguments.get<Point>(1), mac.now);
    if (id != 0) hit.element = ElementReference{element.pid, id};
    if (id == 0) hit.outcome.error = ax::Error::noValue;
  }
  return {pack(hit), message.delay};
}

Answer axPerform(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto element = arguments.get<ElementReference>(0);
  const std::string action = arguments.text(1);
  Message message = send(mac, element.pid);
  const auto name = nameIn(message, element.id);
  Performed done;
  if (message.application != nullptr) {
    done = perform(mac.world, element.pid, element.id, action);
    message.outcome.error = done.error;
  } else {
    done.outcome = whyLost(message.outcome);
  }
  enter(mac, {.kind = JournalEntry::Kind::action,
              .target = element.pid,
              .window = windowOf(name),
              .what = action,
              .landed = done.landed,
              .outcome = std::move(done.outcome),
              .element = name});
  return {pack(message.outcome), message.delay};
}

Answer axSetAttribute(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto element = arguments.get<ElementReference>(0);
  const std::string name = arguments.text(1);
  const AttributeValue value = unpackWritten(arguments.get<Datum>(2));
  Message message = send(mac, element.pid);
  const auto written = nameIn(message, element.id);
  if (message.application != nullptr) {
    message.outcome.error =
        writeAttribute(mac.world, *message.application, element.id, name, value, mac.now);
  }
  const bool isObeyed = obeysAllTheSame(message, element.id, name);
  const bool landed = message.outcome.error == ax::Error::success || isObeyed;
  enter(mac, {.kind = JournalEntry::Kind::write,
              .target = element.pid,
              .window = windowOf(written),
              .what = name,
              .landed = landed,
              .outcome = isObeyed ? "obeyed, and answered as unknown"
                         : landed ? outcomeOfWrite(message, element.id, name, value)
                                  : whyLost(message.outcome),
              .element = written,
              .text = std::visit(ValueText{message.application}, value),
              .isValue = !std::holds_alternative<std::string>(value)});
  return {pack(message.outcome), message.delay};
}

Answer axTrusted(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.world.accessibilityAllowed), 0};
}

Answer axGetWindow(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto reference = arguments.get<ElementReference>(0);
  const Message message = send(mac, reference.pid);
  std::vector<std::int64_t> answer = {static_cast<std::int64_t>(message.outcome.error), 0, 0};
  if (message.application != nullptr) {
    const Element* element = findElement(*message.application, reference.id);
    if (element == nullptr || element->window == 0) {
      answer[0] = illegalArgument;
    } else {
      const Window* window = findWindow(mac.world, element->window);
      answer[2] = window != nullptr && window->numberHidden ? 0 : element->window;
    }
  }
  return {pack(answer), message.delay};
}

}  // namespace simulator::calls
