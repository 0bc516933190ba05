#include <algorithm>

#include "tests/oracle/commands.h"
#include "tests/oracle/elements.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/pointer.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

/// Presses the element, and adds what came of it to the reply.
Json pressed(Stage& stage, const Element& element, Json reply) {
  const std::int32_t error = stage.perform(element, "AXPress");
  reply["ok"] = error == 0;
  reply["axError"] = error;
  return reply;
}

/// The same with the element as it is after the press.
Json pressedElement(Stage& stage, const Element& element, Json reply) {
  reply = pressed(stage, element, std::move(reply));
  reply["element"] = describe(stage, element);
  return reply;
}

struct Labelled {
  Element element;
  std::optional<double> top;
};

std::vector<Element> containerRoots(Stage& stage, Pid pid, const std::string& label) {
  std::vector<Element> groups;
  walk(stage, windowsInScope(stage, pid), readBounds, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         if (roleOf(stage, element) == "AXGroup" &&
             same(normalizedLabel(labelOf(stage, element)), label)) {
           groups.push_back(element);
         }
         return true;
       });
  if (groups.size() != 1) throw Failure{"the requested navigation container is not unique"};
  return groups;
}

std::vector<Labelled> exactlyLabelled(Stage& stage, const std::vector<Element>& roots,
                                      const std::string& label) {
  std::vector<Labelled> found;
  walk(stage, roots, readBounds, Siblings::lastFirst, [&](const Element& element, int /*depth*/) {
    if (!isActionable(roleOf(stage, element))) return true;
    if (!same(normalizedLabel(labelOf(stage, element)), label)) return true;
    const auto frame = stage.frame(element);
    found.push_back({element, frame ? std::optional(frame->y) : std::nullopt});
    return true;
  });
  return found;
}

Element lowest(const std::vector<Labelled>& found) {
  if (found.size() == 1) return found[0].element;
  const Labelled* best = nullptr;
  for (const Labelled& each : found) {
    if (!each.top) throw NoOpinion{Silence::equallyLow};
    if (best == nullptr || *each.top > *best->top) best = &each;
  }
  const auto ties = std::count_if(found.begin(), found.end(),
                                  [&](const Labelled& each) { return each.top == best->top; });
  if (ties > 1) throw NoOpinion{Silence::equallyLow};
  return best->element;
}

std::vector<Element> pressableChildren(Stage& stage, const Element& row) {
  std::vector<Element> controls;
  for (const Element& child : stage.list(row, "AXChildren").value_or(std::vector<Element>())) {
    const auto actions = stage.actions(child);
    if (std::find(actions.begin(), actions.end(), "AXPress") != actions.end()) {
      controls.push_back(child);
    }
  }
  return controls;
}

std::optional<Element> chosenChild(Stage& stage, const std::vector<Element>& controls,
                                   const std::string& text) {
  if (text == "last") return controls.empty() ? std::nullopt : std::optional(controls.back());
  for (const Element& control : controls) {
    if (same(normalizedLabel(innerText(stage, control)), normalizedLabel(text))) return control;
  }
  return std::nullopt;
}

Json pressedInRow(Stage& stage, const Element& row, const std::string& text) {
  const auto controls = pressableChildren(stage, row);
  const auto control = chosenChild(stage, controls, text);
  if (!control) {
    Json reply = refusal("row has no control " + inQuotes(text));
    reply["controls"] = Json::array();
    for (const Element& each : controls) reply["controls"].push_back(innerText(stage, each));
    return reply;
  }
  Json reply = pressed(stage, *control, Json::object());
  reply["row"] = describe(stage, row);
  reply["pressed"] = innerText(stage, *control);
  return reply;
}

}  // namespace

Json axPress(Stage& stage, const Words& words) {
  require(words, 3, "ax-press <app> <x> <y>");
  const Point point = pointAt(words, 1);
  const auto element = actionableAt(stage, enabledApp(stage, words[0]), point);
  if (!element) return refusal("no element");
  return pressedElement(stage, *element, Json::object());
}

Json axMatch(Stage& stage, const Words& words) {
  require(words, 4, "ax-match <app> <label> <x> <y>");
  const Point point = pointAt(words, 2);
  const auto match = bestMatch(stage, enabledApp(stage, words[0]), words[1], point);
  if (!match) return refusal("no element");
  return {{"ok", true}, {"element", describe(stage, match->element)}, {"matchedBy", match->kind}};
}

Json axPressMatch(Stage& stage, const Words& words) {
  require(words, 4, "ax-press-match <app> <label> <x> <y>");
  const Point point = pointAt(words, 2);
  const auto match = bestMatch(stage, enabledApp(stage, words[0]), words[1], point);
  if (!match) return refusal("no element");
  return pressedElement(stage, match->element, {{"matchedBy", match->kind}});
}

Json axPressExact(Stage& stage, const Words& words) {
  require(words, 2, "ax-press-exact <app> <label> [only|last] [container label]");
  const std::string wanted = normalizedLabel(words[1]);
  const bool isOnly = words.size() < 3 || words[2] == "only";
  const std::string container = words.size() < 4 ? "" : normalizedLabel(words[3]);
  if (words.size() >= 4 && container.empty()) throw Failure{"empty navigation container"};
  const Pid pid = enabledApp(stage, words[0]);
  const auto roots =
      words.size() >= 4 ? containerRoots(stage, pid, container) : windowsInScope(stage, pid);
  const auto found = exactlyLabelled(stage, roots, wanted);
  if (found.empty()) return refusal("no element labelled " + inQuotes(words[1]));
  if (isOnly && found.size() > 1) {
    return refusal(std::to_string(found.size()) + " elements labelled " + inQuotes(words[1]));
  }
  return pressedElement(stage, lowest(found), {{"matches", found.size()}});
}

Json axPressChild(Stage& stage, const Words& words) {
  require(words, 3, "ax-press-child <app> <row label text> <child text|last> [row role]");
  const Pid pid = enabledApp(stage, words[0]);
  const auto match = bestMatch(stage, pid, words[1], noPoint);
  const auto frame = match ? stage.frame(match->element) : std::nullopt;
  if (!frame) return refusal("no row matching " + inQuotes(words[1]));
  const Element row = match->element;
  if (words.size() >= 4 && roleOf(stage, row) != words[3]) {
    Json reply = refusal("row matching " + inQuotes(words[1]) + " is not a " + words[3]);
    reply["row"] = describe(stage, row);
    return reply;
  }
  const Point centre{frame->x + frame->width / 2, frame->y + frame->height / 2};
  const auto window = windowAt(stage, pid, centre);
  if (!window) throw Failure{"no target window for row hover"};
  const std::string error = backgroundMotion(stage, pid, *window, centre, std::nullopt);
  (void)error;  // the reference makes nothing of a hover that was refused
  stage.wait(500'000);
  return pressedInRow(stage, row, words[2]);
}

Json axPressInDocument(Stage& stage, const Words& words) {
  require(words, 3, "ax-press-in-document <app> <document> <button>");
  const Pid pid = enabledApp(stage, words[0]);
  std::vector<Element> documents;
  walk(stage, windowsInScope(stage, pid), readBounds, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         if (roleOf(stage, element) == "AXWebArea" && !labelOf(stage, element).empty()) {
           documents.push_back(element);
         }
         return true;
       });
  if (documents.size() != 1 || !same(labelOf(stage, documents[0]), words[1])) {
    throw Failure{"the expected conversation document is not uniquely open"};
  }
  std::vector<Element> buttons;
  for (const Element& button : buttonsIn(stage, documents[0])) {
    if (same(labelOf(stage, button), words[2])) buttons.push_back(button);
  }
  if (buttons.size() != 1) {
    throw Failure{"the expected conversation has no unique button with that exact label"};
  }
  return pressed(
      stage, buttons[0],
      {{"pressed", labelOf(stage, buttons[0])}, {"document", labelOf(stage, documents[0])}});
}

}  // namespace oracle
