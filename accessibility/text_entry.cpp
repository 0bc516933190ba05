#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/labels.h"
#include "accessibility/match.h"
#include "accessibility/messages.h"
#include "accessibility/text_field.h"
#include "base/utf16.h"
#include "input/session.h"
#include "main/arguments.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/json.h"
#include "platform/loop.h"
#include "platform/text.h"

namespace driver {

namespace {

// Applications answer a write before they have taken it in: web pages run their handlers first, and
// these may undo it.
constexpr std::uint32_t settlingMicroseconds = 150'000;
constexpr std::uint32_t valueSettlingMicroseconds = 200'000;
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
  // Without a label the field is meant that has the focus already; a label that was given is not
  // overruled by it.
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
  // The selection may be told of the decoration, or of a text that has changed since.
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

/// What a field shows. `now` has nothing but its element yet, or was read with the structure.
ComposerText shownIn(Snapshot& now) { return axComposerText(now, Batch(structureAttributes)); }

/// Whether a field shows another text than before, or does no longer tell all of it.
bool hasChanged(const ComposerText& before, const ComposerText& now) {
  return before.complete != now.complete || !sameText(before.text, now.text);
}

/// Writes through the selection, as typing would: what stands around it is left alone. Where that
/// changes nothing, through the value. A field that has changed in another way, in its value or in
/// what it shows, is not written to again: that could double the text, or destroy one that its
/// value does not tell.
const char* insertPart(const Field& field, const Change& change) {
  Snapshot before(field.element);
  const ComposerText shownBefore = shownIn(before);
  const char* method = "none";
  if (write(field, "AXSelectedTextRange", ax::Value{change.range}) &&
      write(field, "AXSelectedText", ax::Value{change.text})) {
    loop::sleepMicroseconds(settlingMicroseconds);
    method = "selected";
  }
  Snapshot now(field.element);
  now.read(structureAttributes | AttributeSet{Attribute::value});
  const ComposerText shown = shownIn(now);
  if (holdsText(now, shown, change.expected, field.chrome)) return method;
  if (!sameText(contentOf(now, field.chrome), field.prior)) return method;
  if (hasChanged(shownBefore, shown)) return method;
  if (!sessionUsable()) {
    // The wait was long enough for the screen to lock.
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

/// What the write said does not count: "ok" is that the text was seen in the field.
Reply landingReply(const Field& field, const std::string& expected, const char* method) {
  loop::sleepMicroseconds(settlingMicroseconds);
  Snapshot now(field.element);
  now.read(structureAttributes | infoAttributes | AttributeSet{Attribute::value});
  const bool landed = holdsText(now, shownIn(now), expected, field.chrome);
  Reply reply = {{"ok", landed},
                 {"method", method},
                 {"element", axInfo(now, Batch(structureAttributes))},
                 {"before", text::prefix(field.prior, priorCharactersMax)}};
  if (!landed) {
    reply["error"] = "text did not land in the field (value after write does not match)";
  }
  return reply;
}

/// Writes a text into the text input that the label and the point describe, and reads it back;
/// returns the reply. `mode` says where: "replace" (which spares what is none of
/// `ownedPriorTexts`), "message", "end", "new_line" or "caret"; any other word is as "end".
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
  // Whether it takes the focus or not: many a field is written to without it.
  write(field, "AXFocused", ax::Value{true});
  if (mode == "replace" || mode == "message") {
    return landingReply(field, text, replaceAll(field, text));
  }
  // Only now: the focus may move the caret.
  const Change change = changeFor(mode, field, text);
  const char* method = insertPart(field, change);
  return landingReply(field, change.expected, method);
}

}  // namespace

void axInsertCommand(const Arguments& arguments) {
  const Point point = pointIn(arguments, 4);
  std::vector<std::string> owned;
  if (arguments.size() > 8) {
    // What is no list of texts owns nothing: so the refusal is at worst one too many.
    if (const auto list = json::parse(arguments[8])) owned = textsIn(*list).value_or(owned);
  }
  emit(axInsert(axApp(arguments[2]), arguments[3], point, arguments[6], arguments[7], owned));
}

namespace {

constexpr std::size_t tailUnits = 120;  // UTF-16: enough to see where a text stops

/// Adds what only text inputs have: the whole value, and the caret.
void addText(Value::Object& info, Snapshot& element) {
  const std::string* text = element.text(Attribute::value);
  if (text == nullptr) return;
  info["value"] = *text;
  info["length"] = static_cast<std::int64_t>(utf16Length(*text));
  info["tail"] = std::string(utf16Suffix(*text, tailUnits));
  if (const auto* selected = element.get<ax::Range>(Attribute::selectedRange)) {
    info["caret"] = selected->location;
    info["selected"] = selected->length;
  }
}

}  // namespace

void axFocusCommand(const Arguments& arguments) {
  const Point near = pointIn(arguments, 4);
  const std::optional<Match> match = axMatch(axApp(arguments[2]), arguments[3], near);
  if (!match) {
    emit(refusal("no element"));
    return;
  }
  const ax::Element& element = match->element.element();
  const ax::Error error = messages::setAttribute(element, "AXFocused", ax::Value{true});
  emit({{"ok", error == ax::Error::success},
        {"element", axInfo(element)},
        {"matchedBy", wordOf(match->kind)}});
}

void axFocusedCommand(const Arguments& arguments) {
  Reply reply = {{"ok", true}, {"element", Value()}};
  if (std::optional<Snapshot> focused = axFocused(axApp(arguments[2]))) {
    focused->read(infoAttributes | AttributeSet{Attribute::editable, Attribute::value});
    Value::Object info = axInfo(*focused, Batch(structureAttributes));
    if (isTextInput(*focused)) addText(info, *focused);
    reply["element"] = std::move(info);
  }
  emit(reply);
}

void axSetValueCommand(const Arguments& arguments) {
  const Point point = pointIn(arguments, 3);
  const std::optional<Snapshot> found = axActionable(point, axApp(arguments[2]));
  if (!found) {
    emit(refusal("no element"));
    return;
  }
  const ax::Element& element = found->element();
  messages::setAttribute(element, "AXFocused", ax::Value{true});
  Reply reply = actionReply(messages::setAttribute(element, "AXValue", ax::Value{arguments[5]}));
  loop::sleepMicroseconds(valueSettlingMicroseconds);
  reply["element"] = axInfo(element);
  emit(reply);
}

}  // namespace driver
