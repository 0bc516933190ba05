#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "accessibility/command_words.h"
#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/match.h"
#include "accessibility/messages.h"
#include "accessibility/text_field.h"
#include "base/utf16.h"
#include "main/replies.h"

namespace driver {

namespace {

constexpr std::size_t tailUnits = 120;  // UTF-16

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

}  // namespace driver
