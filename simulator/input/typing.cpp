#include "simulator/input/typing.h"

#include <algorithm>
#include <string_view>

#include "base/utf16.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"

namespace simulator {

namespace {

/// A field's text with places in it, in bytes.
struct Text {
  std::string_view text;

  std::size_t offset(std::int64_t units) const {
    return driver::utf16Offset(text, static_cast<std::size_t>(units));
  }
  std::int64_t units(std::size_t offset) const { return utf16Length(text.substr(0, offset)); }

  std::size_t before(std::size_t offset) const {
    if (offset == 0) return 0;
    while (--offset > 0 && continuesCharacter(text[offset])) {
    }
    return offset;
  }
  std::size_t behind(std::size_t offset) const {
    if (offset >= text.size()) return text.size();
    while (++offset < text.size() && continuesCharacter(text[offset])) {
    }
    return offset;
  }
  std::size_t lineStart(std::size_t offset) const {
    const std::size_t feed = offset == 0 ? text.npos : text.rfind('\n', offset - 1);
    return feed == text.npos ? 0 : feed + 1;
  }
  std::size_t lineEnd(std::size_t offset) const {
    return std::min(text.find('\n', offset), text.size());
  }
  /// The place in the line that begins at `start` that is as far from its beginning.
  std::size_t inLine(std::size_t start, std::int64_t column) const {
    const std::string_view line = text.substr(start, lineEnd(start) - start);
    return start + driver::utf16Offset(line, static_cast<std::size_t>(column));
  }
};

std::size_t movedCaret(const Text& text, std::size_t caret, CaretMove move) {
  const std::size_t start = text.lineStart(caret);
  const std::int64_t column = text.units(caret) - text.units(start);
  switch (move) {
    case CaretMove::left:
      return text.before(caret);
    case CaretMove::right:
      return text.behind(caret);
    case CaretMove::up:
      return start == 0 ? 0 : text.inLine(text.lineStart(start - 1), column);
    case CaretMove::down: {
      const std::size_t end = text.lineEnd(caret);
      return end == text.text.size() ? end : text.inLine(end + 1, column);
    }
    case CaretMove::start:
      return 0;
    case CaretMove::end:
      break;
  }
  return text.text.size();
}

void select(Element& field, const ax::Range& range) {
  field.attributes["AXSelectedTextRange"] = range;
}

/// Removes what is selected, else what lies between the caret and where the move would take it.
void deleteTo(Application& application, ElementId id, CaretMove move) {
  const Element* field = findElement(application, id);
  if (field == nullptr) return;
  ax::Range range = selectionOf(*field);
  if (range.length == 0) {
    const Text text{textOf(*field)};
    const std::int64_t other = text.units(movedCaret(text, text.offset(range.location), move));
    range = {std::min(range.location, other), std::max(range.location, other)};
    range.length -= range.location;
  }
  if (range.length > 0) typeInto(application, id, range, "");
}

}  // namespace

void moveCaret(Element& field, CaretMove move) {
  const ax::Range range = selectionOf(field);
  // An arrow gives the selection up before it moves anything, as everywhere on a Mac.
  if (range.length > 0 && (move == CaretMove::left || move == CaretMove::right)) {
    const std::int64_t end = range.location + range.length;
    select(field, {move == CaretMove::left ? range.location : end, 0});
    return;
  }
  const Text text{textOf(field)};
  const bool ahead = move == CaretMove::right || move == CaretMove::down;
  const std::size_t caret = text.offset(range.location + (ahead ? range.length : 0));
  select(field, {text.units(movedCaret(text, caret, move)), 0});
}

void deleteBackward(Application& application, ElementId field) {
  deleteTo(application, field, CaretMove::left);
}

void deleteForward(Application& application, ElementId field) {
  deleteTo(application, field, CaretMove::right);
}

void selectAll(Element& field) { select(field, {0, utf16Length(textOf(field))}); }

}  // namespace simulator
