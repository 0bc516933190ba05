#include "simulator/rules/insert.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/utf16.h"
#include "base/utf8.h"
#include "platform/text.h"
#include "simulator/rules/replies.h"
#include "simulator/world/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/roles.h"

namespace simulator {

using platform::Call;
using platform::Function;

namespace {

enum Argument : std::size_t { mode = 6, written = 7, owned = 8 };

constexpr std::size_t levelsMax = 40;
constexpr std::size_t elementsMax = 4096;

bool isRead(Function function) {
  return function == Function::axAttribute || function == Function::axAttributes;
}

bool isOneOf(const std::string& value, std::initializer_list<const char*> values) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

std::vector<std::string> namesOf(const Call& call) {
  if (call.function == Function::axAttribute) {
    return {driver::unpack<std::string>(call.arguments.at(1))};
  }
  return driver::unpack<std::vector<std::string>>(call.arguments.at(1));
}

/// The payload of a slot's value when it is of this kind.
template <class T>
std::optional<T> valueOf(const platform::WireSlot& slot, platform::ValueKind kind) {
  if (slot.value.isNothing()) return std::nullopt;
  const auto parts = driver::unpack<std::vector<driver::Datum>>(slot.value);
  if (driver::unpack<platform::ValueKind>(parts.at(0)) != kind) return std::nullopt;
  return driver::unpack<T>(parts.at(1));
}

/// The text as it is compared: white space and the composition of letters aside.
std::string comparable(std::string_view text) {
  return text::canonical(squashedText(driver::repairedUtf8(text)));
}

}  // namespace

bool InsertRules::concernsUs() const {
  return run_.client.arguments.size() > written && run_.command() == "ax-insert";
}

const std::string& InsertRules::argument(std::size_t index) const {
  return run_.client.arguments[index];
}

std::optional<AttributeValue> InsertRules::read(const Key& key, const std::string& name) const {
  const Application* application = findApplication(run_.mac.world, key.first);
  if (application == nullptr) return std::nullopt;
  return readAttribute(run_.mac.world, *application, key.second, name, run_.mac.now).value;
}

std::string InsertRules::readText(const Key& key, const std::string& name) const {
  const auto value = read(key, name);
  const auto* found = value ? std::get_if<std::string>(&*value) : nullptr;
  return found == nullptr ? "" : driver::repairedUtf8(*found);
}

/// The value, or nothing when it is the field's placeholder or label shown in its place.
std::string InsertRules::withoutDecoration(const Key& key, const std::string& value) const {
  const std::string plain = comparable(value);
  const std::string label = [&] {
    for (const char* name : {"AXTitle", "AXDescription", "AXPlaceholderValue", "AXHelp"}) {
      std::string found = readText(key, name);
      if (!found.empty()) return found;
    }
    return std::string();
  }();
  const bool isDecoration =
      plain == comparable(readText(key, "AXPlaceholderValue")) || plain == comparable(label);
  return isDecoration ? "" : value;
}

std::set<std::string> InsertRules::ownTexts() const {
  std::set<std::string> texts;
  if (run_.client.arguments.size() <= owned) return texts;
  // A run's arguments are texts: what is ill-formed in them was repaired as in what a field holds.
  const auto list = nlohmann::json::parse(driver::repairedUtf8(argument(owned)), nullptr, false);
  const bool isList =
      list.is_array() &&
      std::all_of(list.begin(), list.end(), [](const auto& each) { return each.is_string(); });
  if (!isList) return texts;
  for (const auto& each : list) texts.insert(comparable(each.template get<std::string>()));
  return texts;
}

/// A single-line field in a sheet, a popover or a dialog.
bool InsertRules::isTransient(Key key) const {
  const std::string role = readText(key, "AXRole");
  if (!takesText(role) || role == "AXTextArea") return false;
  for (std::size_t level = 0; level < levelsMax; ++level) {
    const auto parent = read(key, "AXParent");
    const auto* link = parent ? std::get_if<ElementLink>(&*parent) : nullptr;
    if (link == nullptr) return false;
    key.second = link->id;
    const std::string around = readText(key, "AXRole");
    if (isOneOf(around, {"AXSheet", "AXPopover"})) return true;
    if (around == "AXWindow") {
      return isOneOf(readText(key, "AXSubrole"),
                     {"AXDialog", "AXSystemDialog", "AXFloatingWindow"});
    }
  }
  return false;
}

void InsertRules::checkReplacement(const Key& key, Violations& violations) const {
  // The system refuses the write, as it has refused to read: nothing is replaced.
  if (!run_.mac.world.accessibilityAllowed) return;
  const auto told = told_.find(key);
  const std::string value = told == told_.end() ? readText(key, "AXValue") : told->second;
  const std::string held = comparable(withoutDecoration(key, value));
  if (held.empty() || faulty_.count(key) > 0) return;
  if (ownTexts().count(held) > 0 || isTransient(key)) return;
  violations.push_back("I13: a text was replaced that the run had not written");
}

/// Whether an element that has gone told this text before: a field may show what it has anew.
bool InsertRules::isShownAnew(const std::string& now) const {
  return std::any_of(told_.begin(), told_.end(), [&](const auto& each) {
    const Application* application = findApplication(run_.mac.world, each.first.first);
    const bool isThere =
        application != nullptr && findElement(*application, each.first.second) != nullptr;
    return !isThere && comparable(each.second) == now;
  });
}

/// What has changed, in the field or in a text that it shows, was not what the first write asked
/// for; a text that was not read before is not known to be the same.
void InsertRules::checkSecondWrite(Violations& violations) const {
  for (const auto& [key, value] : toldSince_) {
    const auto before = told_.find(key);
    const std::string now = comparable(withoutDecoration(key, value));
    const std::string then =
        before == told_.end() ? "" : comparable(withoutDecoration(key, before->second));
    if (now == then || faulty_.count(key) > 0) continue;
    if (before == told_.end() && isShownAnew(now)) continue;
    violations.push_back("I13: a second write into a field that had changed");
    return;
  }
}

void InsertRules::before(const ObservedCall& seen, Violations& violations) {
  const Call& call = seen.call;
  if (call.function != Function::axSetAttribute || !concernsUs()) return;
  const auto reference = driver::unpack<platform::ElementReference>(call.arguments.at(0));
  const Key key{reference.pid, reference.id};
  if (key.second == 0) return;  // the application itself is enabled, not written to
  const auto name = driver::unpack<std::string>(call.arguments.at(1));
  const bool isText = name == "AXValue" || name == "AXSelectedText";
  if (isText && argument(mode) == "replace" && !wroteText_) checkReplacement(key, violations);
  if (isText && wroteText_) checkSecondWrite(violations);
  if (!wroteText_) {
    field_ = key;
    const auto told = told_.find(key);
    prior_ = told == told_.end() ? "" : withoutDecoration(key, told->second);
    const auto selection = toldSelection_.find(key);
    if (selection != toldSelection_.end()) priorSelection_ = selection->second;
  }
  if (isText) wroteText_ = true;
  landed_ = false;
}

void InsertRules::noteReadings(const Key& key, const std::vector<std::string>& names,
                               const Answer& answer) {
  const auto readings = driver::unpack<platform::WireReadings>(answer.value);
  for (std::size_t i = 0; i < readings.slots.size() && i < names.size(); ++i) {
    const platform::WireSlot& slot = readings.slots[i];
    if (names[i] == "AXValue") {
      const auto value = valueOf<std::string>(slot, platform::ValueKind::text);
      (wroteText_ ? toldSince_ : told_)[key] = driver::repairedUtf8(value.value_or(""));
    } else if (names[i] == "AXSelectedTextRange" && !wroteText_) {
      const auto range = valueOf<ax::Range>(slot, platform::ValueKind::range);
      if (range) toldSelection_[key] = *range;
    }
  }
}

void InsertRules::after(const ObservedCall& seen, const Answer& answer,
                        Violations& /*violations*/) {
  const Call& call = seen.call;
  if (!concernsUs() || (!isRead(call.function) && call.function != Function::axSetAttribute)) {
    return;
  }
  const auto reference = driver::unpack<platform::ElementReference>(call.arguments.at(0));
  const Key key{reference.pid, reference.id};
  if (seen.faulty) {
    faulty_.insert(key);
    return;
  }
  if (!isRead(call.function)) return;
  noteReadings(key, namesOf(call), answer);
  if (field_ && field_->first == key.first) landed_ = landed_ || holdsExpected();
}

std::string InsertRules::expected() const {
  const std::string& added = argument(written);
  if (isOneOf(argument(mode), {"replace", "message"})) return added;
  const auto length = static_cast<std::int64_t>(driver::utf16Length(prior_));
  if (argument(mode) != "caret" || !priorSelection_) {
    return prior_ + (argument(mode) == "new_line" ? "\n" : "") + added;
  }
  const std::int64_t location = std::clamp(priorSelection_->location, std::int64_t{0}, length);
  const std::int64_t selected =
      std::clamp(priorSelection_->length, std::int64_t{0}, length - location);
  return driver::utf16Replaced(prior_, static_cast<std::size_t>(location),
                               static_cast<std::size_t>(selected), added);
}

/// The visible text in a field; none when it cannot be told.
std::optional<std::string> InsertRules::staticTexts(const Key& field) const {
  std::string joined;
  std::size_t visited = 0;
  std::vector<ElementId> stack{field.second};
  while (!stack.empty()) {
    if (++visited > elementsMax) return std::nullopt;
    const Key key{field.first, stack.back()};
    stack.pop_back();
    const std::string role = readText(key, "AXRole");
    if (key.second != field.second && takesText(role)) return std::nullopt;
    if (role == "AXStaticText") joined += "\n" + readText(key, "AXValue");
    const auto value = read(key, "AXChildren");
    const auto* children = value ? std::get_if<std::vector<ElementId>>(&*value) : nullptr;
    if (children != nullptr) stack.insert(stack.end(), children->rbegin(), children->rend());
  }
  return joined;
}

bool InsertRules::holdsExpected() const {
  const std::string wanted = comparable(expected());
  const auto visible = staticTexts(*field_);
  if (!visible) return false;
  const std::string shown = comparable(*visible);
  if (!shown.empty()) return shown == wanted;
  const std::string value = readText(*field_, "AXValue");
  return comparable(withoutDecoration(*field_, value)) == wanted;
}

/// Whether a fault has answered for the field, or for something in it.
bool InsertRules::isMisledAbout(const Key& field) const {
  const Application* application = findApplication(run_.mac.world, field.first);
  return std::any_of(faulty_.begin(), faulty_.end(), [&](const Key& key) {
    if (key.first != field.first || application == nullptr) return key == field;
    ElementId id = key.second;
    for (std::size_t level = 0; id != field.second && id != 0 && level < levelsMax; ++level) {
      const Element* element = findElement(*application, id);
      id = element == nullptr ? 0 : element->parent;
    }
    return id == field.second;
  });
}

void InsertRules::atEnd(Violations& violations) {
  if (!run_.reply || !run_.reply->ok || !concernsUs()) return;
  if (!field_) {
    violations.push_back("I13: a success without a write");
  } else if (!isMisledAbout(*field_) && !landed_) {
    violations.push_back("I13: a success, and the field was not seen to hold the text");
  }
}

}  // namespace simulator
