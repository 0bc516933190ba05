#include "accessibility/insert.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "accessibility/actionable.h"
#include "accessibility/command_words.h"
#include "accessibility/commands.h"
#include "accessibility/composer.h"
#include "accessibility/element.h"
#include "accessibility/field_content.h"
#include "accessibility/info.h"
#include "accessibility/labels.h"
#include "accessibility/match.h"
#include "accessibility/messages.h"
#include "accessibility/text_field.h"
#include "base/utf16.h"
#include "input/session.h"
#include "main/globals.h"
#include "platform/json.h"
#include "platform/loop.h"
#include "platform/text.h"

namespace driver {

namespace {

constexpr std::uint32_t settlingMicroseconds = 150'000;
constexpr std::size_t priorCharactersMax = 20'000;

/// A field as it was found.
struct Field {
  ax::Element element;
  std::vector<std::string> chrome;  // squashed
  std::string prior;
};

/// What is to be written.
struct Change {
  std::string text;
  ax::Range range;       // of the prior text, in UTF-16 units
  std::string expected;  // the whole text after it
};

std::optional<Snapshot> ifTextInput(std::optional<Snapshot> element) {
  return element && isTextInput(*element) ? std::move(element) : std::nullopt;
}

std::optional<Snapshot> targetField(const ax::Element& application, const std::string& label,
                                    Point point) {
  if (label.empty()) {
    if (auto focused = ifTextInput(axFocused(application))) return focused;
  }
  std::optional<Match> match = axMatch(application, label, point);
  if (!match || isTextInput(match->element)) {
    return match ? std::optional(std::move(match->element)) : std::nullopt;
  }
  // A match by the point alone is what lies there already.
  if (match->kind == MatchKind::hit) return std::nullopt;
  return ifTextInput(axActionable(point, application));
}

bool write(const Field& field, const char* attribute, const ax::Value& value) {
  return messages::setAttribute(field.element, attribute, value) == ax::Error::success;
}

std::string textFor(const std::string& mode, const Field& field, const std::string& text) {
  const bool breaksLine = mode == "new_line" && !field.prior.empty() && field.prior.back() != '\n';
  return breaksLine ? "\n" + text : text;
}

/// Where the text goes: to the selection, as far as it lies in the prior text, or to its end.
ax::Range rangeFor(const std::string& mode, const Field& field) {
  const auto length = static_cast<std::int64_t>(utf16Length(field.prior));
  const std::optional<ax::Value> value =
      mode == "caret" ? axAttr(field.element, "AXSelectedTextRange") : std::nullopt;
  const ax::Range* selected = value ? value->get<ax::Range>() : nullptr;
  if (selected == nullptr) return {length, 0};
  const std::int64_t location = std::clamp<std::int64_t>(selected->location, 0, length);
  return {location, std::clamp<std::int64_t>(selected->length, 0, length - location)};
}

Change changeFor(const std::string& mode, const Field& field, const std::string& text) {
  Change change{textFor(mode, field, text), rangeFor(mode, field), {}};
  change.expected = utf16Replaced(field.prior, static_cast<std::size_t>(change.range.location),
                                  static_cast<std::size_t>(change.range.length), change.text);
  return change;
}

const char* replaceAll(const Field& field, const std::string& text) {
  return write(field, "AXValue", ax::Value{text}) ? "value" : "none";
}

/// Writes through the selection, and where that changes nothing, through the value.
const char* insertPart(const Field& field, const Change& change) {
  const char* method = "none";
  if (write(field, "AXSelectedTextRange", ax::Value{change.range}) &&
      write(field, "AXSelectedText", ax::Value{change.text})) {
    loop::sleepMicroseconds(settlingMicroseconds);
    method = "selected";
  }
  Snapshot now(field.element);
  now.read(structureAttributes | AttributeSet{Attribute::value});
  if (holdsText(now, change.expected, field.chrome)) return method;
  if (!sameText(contentOf(now, field.chrome), field.prior)) return method;
  if (!sessionUsable()) {
    globals().droppedWhileLocked = true;
    return method;
  }
  return write(field, "AXValue", ax::Value{change.expected}) ? "value" : method;
}

Reply foreignContent(Snapshot& field) {
  Reply reply = refusal(
      "the field already holds content that was not written in this run; replace would destroy it");
  reply["refused"] = true;
  reply["element"] = axInfo(field, Batch(structureAttributes));
  return reply;
}

Reply landingReply(const Field& field, const std::string& expected, const char* method) {
  loop::sleepMicroseconds(settlingMicroseconds);
  Snapshot now(field.element);
  now.read(structureAttributes | infoAttributes | AttributeSet{Attribute::value});
  const bool landed = holdsText(now, expected, field.chrome);
  Reply reply = {{"ok", landed},
                 {"method", method},
                 {"element", axInfo(now, Batch(structureAttributes))},
                 {"before", text::prefix(field.prior, priorCharactersMax)}};
  if (!landed) {
    reply["error"] = "text did not land in the field (value after write does not match)";
  }
  return reply;
}

/// The texts in a JSON list of nothing else; none when it is anything else.
std::vector<std::string> textsIn(const std::string& json) {
  const std::optional<Value> value = json::parse(json);
  const auto* list = value ? value->get<Value::List>() : nullptr;
  if (list == nullptr) return {};
  std::vector<std::string> texts;
  for (const Value& item : *list) {
    const auto* text = item.get<std::string>();
    if (text == nullptr) return {};
    texts.push_back(*text);
  }
  return texts;
}

}  // namespace

Reply axInsert(const ax::Element& application, const std::string& label, Point point,
               const std::string& mode, const std::string& text,
               const std::vector<std::string>& ownedPriorTexts) {
  std::optional<Snapshot> target = targetField(application, label, point);
  if (!target) return refusal("no text input matches " + quoted(label) + " there");
  target->read(labelAttributes | AttributeSet{Attribute::value});
  Field field{target->element(), chromeTexts(*target), {}};
  field.prior = contentOf(*target, field.chrome);
  if (mode == "replace" && !squashed(field.prior).empty()) {
    std::vector<std::string> owned;
    for (const std::string& prior : ownedPriorTexts) owned.push_back(squashed(prior));
    if (!isAmong(field.prior, owned) && !isTransientField(*target)) return foreignContent(*target);
  }
  write(field, "AXFocused", ax::Value{true});
  if (mode == "replace" || mode == "message") {
    return landingReply(field, text, replaceAll(field, text));
  }
  const Change change = changeFor(mode, field, text);
  const char* method = insertPart(field, change);
  return landingReply(field, change.expected, method);
}

void axInsertCommand(const Arguments& arguments) {
  const Point point = pointIn(arguments, 4);
  std::vector<std::string> owned;
  if (arguments.size() > 8) owned = textsIn(arguments[8]);
  emit(axInsert(axApp(arguments[2]), arguments[3], point, arguments[6], arguments[7], owned));
}

}  // namespace driver
