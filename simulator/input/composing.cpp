#include "simulator/input/composing.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "base/utf16.h"
#include "platform/text.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/marking.h"

namespace simulator {

namespace {

/// Accents by themselves, and as they stand behind a letter.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> accents = {{
    {"´", "\u0301"},
    {"`", "\u0300"},
    {"^", "\u0302"},
    {"¨", "\u0308"},
}};

std::string textAt(const Element& field, const ax::Range& range) {
  const std::string_view text = textOf(field);
  const std::size_t begin = driver::utf16Offset(text, static_cast<std::size_t>(range.location));
  const std::size_t end =
      driver::utf16Offset(text, static_cast<std::size_t>(range.location + range.length));
  return std::string(text.substr(begin, end - begin));
}

/// The letter with the accent as one character; empty when there is none.
std::string accented(std::string_view accent, std::string_view letter) {
  for (const auto& [alone, combining] : accents) {
    if (alone != accent) continue;
    const std::string text = text::canonical(std::string(letter) + std::string(combining));
    return characterCount(text) == 1 ? text : "";
  }
  return "";
}

}  // namespace

void cancelMarked(Application& application) {
  if (const auto marked = std::exchange(application.marked, std::nullopt)) {
    typeInto(application, marked->element, marked->range, "");
  }
}

void addMarked(Application& application, ElementId id, std::string_view text, bool isDeadKey) {
  const auto before = markedIn(application, id);
  const ax::Range range = before ? ax::Range{before->location + before->length, 0}
                                 : selectionOf(*findElement(application, id));
  const std::int64_t start = before ? before->location : range.location;
  typeInto(application, id, range, std::string(text));
  const std::int64_t end = selectionOf(*findElement(application, id)).location;
  if (end > start) application.marked = Marked{id, {start, end - start}, isDeadKey};
}

void typeBehindDeadKey(Application& application, ElementId id, std::string_view letter) {
  const ax::Range range = markedIn(application, id).value_or(ax::Range{});
  const std::string accent = textAt(*findElement(application, id), range);
  std::string text = letter == " " ? accent : accented(accent, letter);
  if (text.empty()) text = accent + std::string(letter);
  typeInto(application, id, range, text);
}

}  // namespace simulator
