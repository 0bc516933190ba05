#include <algorithm>

#include "tests/oracle/commands.h"
#include "tests/oracle/elements.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/text_entry.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

constexpr const char* notLanded =
    "text did not land in the field (value after write does not match)";
constexpr const char* wouldDestroy =
    "the field already holds content that was not written in this run; replace would destroy it";

std::vector<std::string> chromeTexts(Stage& stage, const Element& field) {
  std::vector<std::string> texts;
  if (const auto text = stage.text(field, "AXPlaceholderValue")) texts.push_back(squashed(*text));
  texts.push_back(squashed(labelOf(stage, field)));
  texts.erase(std::remove(texts.begin(), texts.end(), ""), texts.end());
  return texts;
}

bool isAmong(const std::vector<std::string>& texts, const std::string& text) {
  return std::any_of(texts.begin(), texts.end(),
                     [&](const std::string& each) { return same(each, text); });
}

/// The field's value, of which its decoration does not count.
std::string contentOf(Stage& stage, const Element& field, const std::vector<std::string>& chrome) {
  const std::string value = stage.text(field, "AXValue").value_or("");
  return isAmong(chrome, squashed(value)) ? "" : value;
}

bool isTransient(Stage& stage, const Element& field) {
  const std::string role = roleOf(stage, field);
  if (role != "AXTextField" && role != "AXComboBox" && role != "AXSearchField") return false;
  Element element = field;
  for (int level = 0; level < 40; ++level) {
    const auto parent = stage.link(element, "AXParent");
    if (!parent) return false;
    const std::string parentRole = roleOf(stage, *parent);
    if (parentRole == "AXSheet" || parentRole == "AXPopover") return true;
    if (parentRole == "AXWindow") {
      const std::string subrole = stage.text(*parent, "AXSubrole").value_or("");
      return subrole == "AXDialog" || subrole == "AXSystemDialog" || subrole == "AXFloatingWindow";
    }
    element = *parent;
  }
  return false;
}

std::vector<std::string> ownedTexts(const Words& words) {
  std::vector<std::string> texts;
  if (words.size() < 7) return texts;
  const Json list = Json::parse(words[6], nullptr, false);
  if (!list.is_array()) return texts;
  for (const Json& item : list) {
    if (!item.is_string()) return {};
    texts.push_back(squashed(item.get<std::string>()));
  }
  return texts;
}

std::optional<Element> insertTarget(Stage& stage, Pid pid, const std::string& label, Point point) {
  if (label.empty()) {
    const auto focused = focusedIn(stage, pid);
    if (focused && isTextInput(stage, *focused)) return focused;
  }
  const auto match = bestMatch(stage, pid, label, point);
  if (match && isTextInput(stage, match->element)) return match->element;
  const auto hit = actionableAt(stage, pid, point);
  if (hit && isTextInput(stage, *hit)) return hit;
  return std::nullopt;
}

/// A write that is under way.
struct Insertion {
  Element field;
  std::string mode;
  std::string text;
  std::string prior;
  std::vector<std::string> chrome;
  std::string expected;
  std::string method = "none";
};

bool hasLanded(Stage& stage, const Insertion& insertion) {
  const FieldText shown = fieldText(stage, insertion.field);
  if (!shown.isComplete) return false;
  const std::string text =
      shown.text.empty() ? contentOf(stage, insertion.field, insertion.chrome) : shown.text;
  return same(squashed(text), squashed(insertion.expected));
}

ax::Range rangeFor(Stage& stage, const Insertion& insertion) {
  const std::int64_t end = utf16Length(insertion.prior);
  if (insertion.mode != "caret") return {end, 0};
  const auto selection = stage.read(insertion.field, "AXSelectedTextRange").value;
  const auto* range = selection ? std::get_if<ax::Range>(&*selection) : nullptr;
  if (range == nullptr) return {end, 0};
  const std::int64_t location = std::clamp<std::int64_t>(range->location, 0, end);
  return {location, std::clamp<std::int64_t>(range->length, 0, end - location)};
}

void writeWhole(Stage& stage, Insertion& insertion) {
  insertion.expected = insertion.text;
  if (stage.write(insertion.field, "AXValue", insertion.text) == 0) insertion.method = "value";
}

void writeAtRange(Stage& stage, Insertion& insertion) {
  if (insertion.mode == "new_line" && !insertion.prior.empty() && insertion.prior.back() != '\n') {
    insertion.text = "\n" + insertion.text;
  }
  const ax::Range range = rangeFor(stage, insertion);
  const FieldText shown = fieldText(stage, insertion.field);
  insertion.expected = withReplaced(insertion.prior, range.location, range.length, insertion.text);
  const bool selected = stage.write(insertion.field, "AXSelectedTextRange", range) == 0 &&
                        stage.write(insertion.field, "AXSelectedText", insertion.text) == 0;
  if (selected) {
    stage.wait(150'000);
    insertion.method = "selected";
  }
  if (hasLanded(stage, insertion)) return;
  const std::string value = stage.text(insertion.field, "AXValue").value_or("");
  const std::string content = contentOf(stage, insertion.field, insertion.chrome);
  const bool isValueKept = same(squashed(value), squashed(insertion.prior));
  const bool isContentKept = same(squashed(content), squashed(insertion.prior));
  if (isValueKept != isContentKept) throw NoOpinion{Silence::shownDecoration};
  if (!isValueKept) return;
  // A field may show what it does not tell as its value: it has changed all the same.
  if (fieldText(stage, insertion.field).text != shown.text) return;
  if (stage.write(insertion.field, "AXValue", insertion.expected) == 0) insertion.method = "value";
}

}  // namespace

std::optional<Element> focusedIn(Stage& stage, Pid pid) {
  if (const auto focused = stage.link({pid, 0}, "AXFocusedUIElement")) {
    if (!scopeOf(stage)) return focused;
    const auto window = stage.link(*focused, "AXWindow");
    if (window && isWindowInScope(stage, *window)) return focused;
  }
  std::vector<Element> found;
  walk(stage, windowsInScope(stage, pid), searchBounds, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         if (isTextInput(stage, element) && stage.isTrue(element, "AXFocused")) {
           found.push_back(element);
         }
         return true;
       });
  return found.size() == 1 ? std::optional(found[0]) : std::nullopt;
}

Json axInsert(Stage& stage, const Words& words) {
  require(words, 6,
          "ax-insert <app> <label> <x> <y> <replace|message|end|new_line|caret> <text> "
          "[ownedPriorJSON]");
  const Point point = pointAt(words, 2);
  const Pid pid = enabledApp(stage, words[0]);
  const auto field = insertTarget(stage, pid, words[1], point);
  if (!field) return refusal("no text input matches " + inQuotes(words[1]) + " there");
  const auto chrome = chromeTexts(stage, *field);
  Insertion insertion{*field, words[4], words[5], contentOf(stage, *field, chrome), chrome, ""};
  const std::string held = squashed(insertion.prior);
  if (words[4] == "replace" && !held.empty() && !isAmong(ownedTexts(words), held) &&
      !isTransient(stage, *field)) {
    Json reply = refusal(wouldDestroy);
    reply["refused"] = true;
    reply["element"] = describe(stage, *field);
    return reply;
  }
  stage.write(*field, "AXFocused", true);
  if (words[4] == "replace" || words[4] == "message") {
    writeWhole(stage, insertion);
  } else {
    writeAtRange(stage, insertion);
  }
  stage.wait(150'000);
  const bool landed = hasLanded(stage, insertion);
  Json reply = {{"ok", landed},
                {"method", insertion.method},
                {"element", describe(stage, *field)},
                {"before", firstCharacters(insertion.prior, 20'000)}};
  if (!landed) reply["error"] = notLanded;
  return reply;
}

Json axFocus(Stage& stage, const Words& words) {
  require(words, 4, "ax-focus <app> <label> <x> <y>");
  const Point point = pointAt(words, 2);
  const auto match = bestMatch(stage, enabledApp(stage, words[0]), words[1], point);
  if (!match) return refusal("no element");
  const bool focused = stage.write(match->element, "AXFocused", true) == 0;
  return {
      {"ok", focused}, {"element", describe(stage, match->element)}, {"matchedBy", match->kind}};
}

Json axFocused(Stage& stage, const Words& words) {
  require(words, 1, "ax-focused <app>");
  const auto element = focusedIn(stage, enabledApp(stage, words[0]));
  if (!element) return {{"ok", true}, {"element", nullptr}};
  Json description = describe(stage, *element);
  const auto value = stage.text(*element, "AXValue");
  if (value && isTextInput(stage, *element)) {
    description["value"] = *value;
    description["length"] = utf16Length(*value);
    description["tail"] = lastUnits(*value, 120);
    const auto selection = stage.read(*element, "AXSelectedTextRange").value;
    if (const auto* range = selection ? std::get_if<ax::Range>(&*selection) : nullptr) {
      description["caret"] = range->location;
      description["selected"] = range->length;
    }
  }
  return {{"ok", true}, {"element", description}};
}

Json axSetValue(Stage& stage, const Words& words) {
  require(words, 4, "ax-set-value <app> <x> <y> <text>");
  const Point point = pointAt(words, 1);
  const auto element = actionableAt(stage, enabledApp(stage, words[0]), point);
  if (!element) return refusal("no element");
  stage.write(*element, "AXFocused", true);
  const std::int32_t error = stage.write(*element, "AXValue", words[3]);
  stage.wait(200'000);
  return {{"ok", error == 0}, {"axError", error}, {"element", describe(stage, *element)}};
}

}  // namespace oracle
