#include "platform/ax.h"

#include "base/utf8.h"
#include "platform/simulated/channel.h"
#include "platform/simulated/values.h"

namespace ax {

using platform::ElementReference;
using platform::Function;
using simulated::objectOf;

namespace {

const ElementReference& referenceOf(const Element& element) {
  return objectOf<ElementReference>(element);
}

/// Texts cross the seam well-formed, whatever an application holds.
void repairTexts(Value& value) {
  if (auto* text = std::get_if<std::string>(&value.data)) {
    if (!driver::isUtf8(*text)) *text = driver::repairedUtf8(*text);
  } else if (auto* items = std::get_if<std::vector<Value>>(&value.data)) {
    for (Value& item : *items) repairTexts(item);
  }
}

Slot slotOf(const platform::WireSlot& wire) {
  Slot slot{std::nullopt, wire.error};
  if (!wire.value.isNothing()) {
    slot.value = simulated::unpackValue(wire.value);
    repairTexts(*slot.value);
  }
  return slot;
}

}  // namespace

Element application(platform::Pid pid) { return simulated::makeElement({pid, 0}); }

platform::Pid pid(const Element& element) { return referenceOf(element).pid; }

Reading attribute(const Element& element, const char* name) {
  const auto wire =
      simulated::askFor<platform::WireReadings>(Function::axAttribute, referenceOf(element), name);
  if (wire.slots.empty()) return {std::nullopt, wire.outcome};
  return {slotOf(wire.slots[0]).value, wire.outcome};
}

Readings attributes(const Element& element, const std::vector<const char*>& names) {
  const auto wire = simulated::askFor<platform::WireReadings>(Function::axAttributes,
                                                              referenceOf(element), names);
  Readings readings{{}, wire.outcome};
  readings.slots.reserve(wire.slots.size());
  for (const auto& slot : wire.slots) readings.slots.push_back(slotOf(slot));
  return readings;
}

ActionNames actionNames(const Element& element) {
  auto wire =
      simulated::askFor<platform::WireActionNames>(Function::axActionNames, referenceOf(element));
  for (std::string& name : wire.names) name = driver::repairedUtf8(name);
  return {std::move(wire.names), wire.outcome};
}

Hit elementAt(const Element& application, platform::Point point) {
  const auto wire =
      simulated::askFor<platform::WireHit>(Function::axElementAt, referenceOf(application), point);
  Hit hit{std::nullopt, wire.outcome};
  if (wire.element) hit.element = simulated::makeElement(*wire.element);
  return hit;
}

Outcome perform(const Element& element, const char* action) {
  return simulated::askFor<Outcome>(Function::axPerform, referenceOf(element), action);
}

Outcome setAttribute(const Element& element, const char* name, const Value& value) {
  return simulated::askFor<Outcome>(Function::axSetAttribute, referenceOf(element), name,
                                    simulated::packValue(value));
}

// Readable in a trace, and different as long as an application has less than a million elements.
std::uint64_t hash(const Element& element) {
  const ElementReference& reference = referenceOf(element);
  return static_cast<std::uint64_t>(reference.pid) * 1'000'000U +
         static_cast<std::uint64_t>(reference.id);
}

std::uint64_t hash(const Value& value) {
  if (const auto* opaque = value.get<Opaque>()) {
    return static_cast<std::uint64_t>(objectOf<std::int64_t>(*opaque));
  }
  // FNV-1a, of what travels: the same in every run, unlike the library's hash.
  std::string bytes;
  driver::encode(simulated::packValue(value), bytes);
  std::uint64_t result = 14695981039346656037U;
  for (const char byte : bytes) {
    result = (result ^ static_cast<std::uint8_t>(byte)) * 1099511628211U;
  }
  return result;
}

bool trusted() { return simulated::askFor<bool>(Function::axTrusted); }

}  // namespace ax
