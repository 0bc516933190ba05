#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/walk.h"
#include "base/geometry.h"
#include "main/arguments.h"
#include "main/replies.h"
#include "platform/text.h"

namespace driver {

namespace {

constexpr double containerArea = 250'000;  // square points: what is as large is no text by itself
constexpr std::size_t shownCharactersMax = 200;

constexpr std::array<Attribute, 3> spoken = {Attribute::value, Attribute::title,
                                             Attribute::description};

// Values are read with the rest: each of them is looked into.
constexpr AttributeSet textAttributes =
    AttributeSet{Attribute::value, Attribute::title, Attribute::description} | frameAttributes;

/// A text that is looked for, and what has been found of it.
struct Finding {
  std::string text;
  std::int64_t count = 0;
  std::optional<Rect> frame;  // of the first element that has both
};

std::vector<Finding> findingsFor(const Arguments& arguments) {
  std::vector<std::string> texts(arguments.begin() + 3, arguments.end());
  // The reply has an entry for each text, so one that is asked for twice cannot be told apart.
  std::sort(texts.begin(), texts.end());
  if (std::adjacent_find(texts.begin(), texts.end()) != texts.end()) {
    fail("the texts to find must be distinct");
  }
  std::vector<Finding> findings;
  for (std::string& text : texts) findings.push_back({std::move(text), 0, std::nullopt});
  return findings;
}

/// Value, title and description in one text, which takes the place of `joined`.
void joinTexts(Snapshot& element, bool emptyOnes, std::string& joined) {
  joined.clear();
  bool first = true;
  for (const Attribute attribute : spoken) {
    const std::string* text = element.text(attribute);
    if (text == nullptr || (text->empty() && !emptyOnes)) continue;
    if (!first) joined += ' ';
    joined += *text;
    first = false;
  }
}

void look(Snapshot& element, const std::string& shown, Finding& finding) {
  if (shown.find(finding.text) == std::string::npos) return;
  ++finding.count;
  if (!finding.frame) finding.frame = axFrame(element);
}

Reply findingsReply(const std::vector<Finding>& findings) {
  Value::Object counts;
  Value::Object frames;
  for (const Finding& finding : findings) {
    counts[finding.text] = finding.count;
    if (finding.frame) frames[finding.text] = geometryOf(*finding.frame);
  }
  return {{"ok", true}, {"counts", counts}, {"frames", frames}};
}

bool isTextAt(Snapshot& element, Point point) {
  const std::optional<Rect> frame = axFrame(element);
  return frame && contains(*frame, point) && area(*frame) < containerArea;
}

}  // namespace

void axFindTextCommand(const Arguments& arguments) {
  std::vector<Finding> findings = findingsFor(arguments);
  std::string shown;
  Walk walk(axWindows(axApp(arguments[2])), textAttributes, textBounds);
  while (Snapshot* element = walk.next()) {
    joinTexts(*element, true, shown);
    for (Finding& finding : findings) look(*element, shown, finding);
  }
  emit(findingsReply(findings));
}

void axTextsAtCommand(const Arguments& arguments) {
  const Point point = pointIn(arguments, 3);
  Value::List texts;
  std::string shown;
  Walk walk(axWindows(axApp(arguments[2])), textAttributes, textBounds);
  while (Snapshot* element = walk.next()) {
    if (!isTextAt(*element, point)) continue;
    joinTexts(*element, false, shown);
    if (!shown.empty()) texts.emplace_back(text::prefix(shown, shownCharactersMax));
  }
  emit({{"ok", true}, {"texts", texts}});
}

}  // namespace driver
