#include <algorithm>
#include <deque>

#include "tests/oracle/commands.h"
#include "tests/oracle/elements.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

/// The decimal text of a value that is a number.
std::optional<std::string> numberValue(Stage& stage, const Element& element) {
  const auto number = stage.number(element, "AXValue");
  if (!number) return std::nullopt;
  return numberText(*number);
}

/// The texts of an element that are there, without empty ones unless `withEmpty`.
std::string ownTexts(Stage& stage, const Element& element, bool withEmpty) {
  std::vector<std::string> texts;
  for (const char* name : {"AXValue", "AXTitle", "AXDescription"}) {
    const auto text = stage.text(element, name);
    if (text && (withEmpty || !text->empty())) texts.push_back(*text);
  }
  return joined(texts, " ");
}

Json listEntry(Stage& stage, const Element& element, const std::string& role) {
  Json entry = describe(stage, element);
  if (entry["label"] == "" && !isTextRole(role)) entry["label"] = innerText(stage, element);
  if (stage.isFalse(element, "AXEnabled")) entry["disabled"] = true;
  return entry;
}

Json dumpEntry(Stage& stage, const Element& element, int depth) {
  Json entry = describe(stage, element);
  entry["depth"] = depth;
  if (const auto subrole = stage.text(element, "AXSubrole")) entry["subrole"] = *subrole;
  if (const auto value = numberValue(stage, element)) entry["value"] = *value;
  return entry;
}

/// The static texts in an element, nearer ones first.
Json textsIn(Stage& stage, const Element& item) {
  Json texts = Json::array();
  std::deque<Element> queue = {item};
  while (!queue.empty()) {
    const Element element = queue.front();
    queue.pop_front();
    if (roleOf(stage, element) == "AXStaticText") {
      const auto value = stage.text(element, "AXValue");
      if (value && !value->empty()) texts.push_back(*value);
    }
    const auto children = stage.list(element, "AXChildren").value_or(std::vector<Element>());
    queue.insert(queue.end(), children.begin(), children.end());
  }
  return texts;
}

}  // namespace

Json axList(Stage& stage, const Words& words) {
  require(words, 1, "ax-list <app>");
  const Pid pid = enabledApp(stage, words[0]);
  Json entries = Json::array();
  walk(stage, windowsInScope(stage, pid), searchBounds, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         if (entries.size() == 400) return false;
         const std::string role = roleOf(stage, element);
         const auto frame = stage.frame(element);
         if (isActionable(role) && frame && frame->width > 1 && frame->height > 1) {
           entries.push_back(listEntry(stage, element, role));
         }
         return true;
       });
  return {{"ok", true}, {"elements", entries}};
}

Json axDump(Stage& stage, const Words& words) {
  require(words, 1, "ax-dump <app>");
  const Pid pid = enabledApp(stage, words[0]);
  Json entries = Json::array();
  walk(stage, windowsInScope(stage, pid), {4000, 79}, Siblings::firstFirst,
       [&](const Element& element, int depth) {
         entries.push_back(dumpEntry(stage, element, depth));
         return true;
       });
  return {{"ok", true}, {"elements", entries}};
}

Json axFindText(Stage& stage, const Words& words) {
  require(words, 2, "ax-find-text <app> <text> [text...]");
  Json counts = Json::object();
  Json frames = Json::object();
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (counts.contains(words[i])) throw NoOpinion{Silence::repeatedText};
    counts[words[i]] = 0;
  }
  const Pid pid = enabledApp(stage, words[0]);
  walk(stage, windowsInScope(stage, pid), readBounds, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         const std::string text = ownTexts(stage, element, true);
         for (auto& [wanted, count] : counts.items()) {
           if (!contains(text, wanted)) continue;
           count = count.get<int>() + 1;
           const auto frame = stage.frame(element);
           if (!frames.contains(wanted) && frame) frames[wanted] = frameJson(*frame);
         }
         return true;
       });
  return {{"ok", true}, {"counts", counts}, {"frames", frames}};
}

Json axTextsAt(Stage& stage, const Words& words) {
  require(words, 3, "ax-texts-at <app> <x> <y>");
  const Point point = pointAt(words, 1);
  const Pid pid = enabledApp(stage, words[0]);
  Json texts = Json::array();
  walk(stage, windowsInScope(stage, pid), readBounds, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         const auto frame = stage.frame(element);
         if (!frame || !holds(*frame, point)) return true;
         if (!(frame->width * frame->height < 250'000)) return true;
         const std::string text = firstCharacters(ownTexts(stage, element, false), 200);
         if (!text.empty()) texts.push_back(text);
         return true;
       });
  return {{"ok", true}, {"texts", texts}};
}

Json axAt(Stage& stage, const Words& words) {
  require(words, 3, "ax-at <app> <x> <y>");
  const Point point = pointAt(words, 1);
  const Pid pid = enabledApp(stage, words[0]);
  const auto element = actionableAt(stage, pid, point);
  return {{"ok", true}, {"element", element ? describe(stage, *element) : Json()}};
}

Json axPopupItems(Stage& stage, const Words& words) {
  require(words, 1, "ax-popup-items <app>");
  const Pid pid = enabledApp(stage, words[0]);
  Json items = Json::array();
  // Windows in their order here, unlike the walks that search.
  auto windows = windowsInScope(stage, pid);
  std::reverse(windows.begin(), windows.end());
  walk(stage, windows, searchBounds, Siblings::firstFirst,
       [&](const Element& element, int /*depth*/) {
         if (roleOf(stage, element) != "AXMenuItem") return true;
         Json item = describe(stage, element);
         item["texts"] = textsIn(stage, element);
         items.push_back(item);
         return true;
       });
  return {{"ok", true}, {"items", items}};
}

}  // namespace oracle
