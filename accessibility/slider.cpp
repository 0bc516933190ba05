#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/messages.h"
#include "accessibility/walk.h"
#include "base/numbers.h"
#include "main/replies.h"
#include "platform/loop.h"
#include "platform/text.h"

namespace driver {

namespace {

// A slider may glide to where it is moved, and tells on the way where it is.
constexpr std::uint32_t sliderSettlingMicroseconds = 300'000;
constexpr AttributeSet sliderAttributes = AttributeSet{Attribute::role} | labelAttributes;

std::vector<ax::Element> slidersLabelled(const ax::Element& application, const std::string& label) {
  std::vector<ax::Element> sliders;
  Walk walk(axWindows(application), sliderAttributes, controlBounds);
  while (Snapshot* element = walk.next()) {
    if (element->role() != "AXSlider" || !text::equal(axLabel(*element), label)) continue;
    sliders.push_back(element->element());
  }
  return sliders;
}

/// Where the slider stands now, and between what.
Reply reading(const ax::Element& slider) {
  Reply reply;
  Snapshot now(slider);
  now.read(AttributeSet{Attribute::value, Attribute::lowestValue, Attribute::highestValue});
  const auto add = [&](const char* key, Attribute attribute) {
    if (const std::optional<double> number = now.number(attribute)) reply[key] = *number;
  };
  add("value", Attribute::value);
  add("min", Attribute::lowestValue);
  add("max", Attribute::highestValue);
  return reply;
}

double numberIn(const std::string& word) {
  const std::optional<double> number = parseDouble(word);
  if (!number || !std::isfinite(*number)) fail("not a number: " + word);
  return *number;
}

/// Moves the slider as the word says.
Reply moved(const ax::Element& slider, const std::string& word) {
  Reply reply;
  if (word == "increment" || word == "decrement") {
    reply =
        actionReply(messages::perform(slider, word == "increment" ? "AXIncrement" : "AXDecrement"));
  } else {
    // A double, whatever the slider tells: it takes a fraction where it can.
    const ax::Value value{numberIn(word)};
    reply["ok"] = messages::setAttribute(slider, "AXValue", value) == ax::Error::success;
  }
  loop::sleepMicroseconds(sliderSettlingMicroseconds);
  return reply;
}

}  // namespace

void axSliderCommand(const Arguments& arguments) {
  const std::string& label = arguments[3];
  const std::vector<ax::Element> sliders = slidersLabelled(axApp(arguments[2]), label);
  if (sliders.size() != 1) {
    emit(refusal(std::to_string(sliders.size()) + " sliders labelled " + quoted(label)));
    return;
  }
  Reply reply = {{"ok", true}};
  if (arguments.size() > 4) reply = moved(sliders.front(), arguments[4]);
  reply.merge(reading(sliders.front()));
  emit(reply);
}

}  // namespace driver
