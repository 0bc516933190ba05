#include "simulator/text/inspection.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "simulator/text/nearest.h"
#include "simulator/text/now.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

bool isWord(const Token& token, std::string_view text) {
  return token.kind == Token::Kind::word && token.text == text;
}

bool isRole(const Token& token) {
  return token.kind == Token::Kind::word && token.text.compare(0, 2, "AX") == 0;
}

/// What follows the word is such a name.
std::optional<NameKind> kindBehind(const Token& token) {
  if (token.kind != Token::Kind::word) return std::nullopt;
  if (token.text == "subrole") return NameKind::subrole;
  if (token.text == "actions") return NameKind::action;
  const bool isAttribute =
      token.text == "attribute" || token.text == "failing" || token.text == "rejects";
  return isAttribute ? std::optional(NameKind::attribute) : std::nullopt;
}

/// The names of a list such as AXPress,AXShowMenu, each as a token.
std::vector<Token> namesIn(const Token& list) {
  std::vector<Token> names;
  std::size_t start = 0;
  while (start < list.text.size()) {
    const std::size_t end = std::min(list.text.find(',', start), list.text.size());
    names.push_back({list.kind,
                     list.text.substr(start, end - start),
                     {list.extent.begin + start, end - start}});
    start = end + 1;
  }
  return names;
}

/// What is in it may lie beyond what can be seen.
bool scrolls(const std::string& role) { return role == "AXScrollArea" || role == "AXWebArea"; }

bool isWithin(const Rect& inner, const Rect& outer) {
  return inner.x >= outer.x && inner.y >= outer.y &&
         inner.x + inner.width <= outer.x + outer.width &&
         inner.y + inner.height <= outer.y + outer.height;
}

std::map<std::string, int> countLabels(const Application& application) {
  std::map<std::string, int> counts;
  for (const Element& each : application.elements) {
    const bool isWindow = each.role == "AXWindow" || each.role == "AXSheet";
    if (!isWindow && !labelOf(each).empty()) ++counts[labelOf(each)];
  }
  return counts;
}

}  // namespace

void Inspection::warn(Complaint complaint) const {
  complaint.isWarning = true;
  complain_(complaint);
}

void Inspection::inspectName(const Line& line, const Token& token, NameKind kind) const {
  if (token.kind != Token::Kind::word || isKnown(kind, token.text)) return;
  if (kind == NameKind::action && token.text == "none") return;
  warn({spotOf(line), "macOS knows no " + std::string(textOf(kind)) + " '" + token.text + "'",
        nearest(token.text, knownNames(kind)), token.extent});
}

void Inspection::inspectNames(const Line& line) const {
  if (isRole(line.tokens.front())) inspectName(line, line.tokens.front(), NameKind::role);
  for (std::size_t i = 1; i + 1 < line.tokens.size(); ++i) {
    const auto kind = kindBehind(line.tokens[i]);
    if (!kind) continue;
    for (const Token& name : namesIn(line.tokens[i + 1])) inspectName(line, name, *kind);
  }
}

/// A condition is about one reaction. The next, behind a semicolon, takes place anyway, which a
/// reader of "when … then …; …" may not expect; one with words of its own before it is no surprise.
void Inspection::inspectConditions(const Line& line) const {
  bool isConditional = false;
  for (std::size_t i = 0; i + 1 < line.tokens.size(); ++i) {
    const Token& next = line.tokens[i + 1];
    if (isWord(line.tokens[i], "then")) isConditional = true;
    if (line.tokens[i].kind != Token::Kind::semicolon) continue;
    if (isConditional && !isWord(next, "when") && !isWord(next, "after")) {
      warn({spotOf(line),
            "this takes place anyway: 'when' is about the one reaction before ';'",
            {},
            next.extent});
    }
    isConditional = false;
  }
}

void Inspection::inspectFrame(const Line& line, const WorldBuilder::Place& place) const {
  const Application& application = world_.applications[place.application];
  const Element* element = findElement(application, place.element);
  const Window* window = findWindow(world_, place.window);
  if (element == nullptr || window == nullptr || !element->frame) return;
  if (!driver::isFinite(*element->frame) || isWithin(*element->frame, window->frame)) return;
  for (const Element* each = element; each != nullptr;
       each = findElement(application, each->parent)) {
    if (scrolls(each->role) || each->role.compare(0, 6, "AXMenu") == 0) return;
  }
  warn({spotOf(line), "it reaches out of its window"});
}

void Inspection::inspect(const Line& line, const WorldBuilder::Place& place) {
  using Kind = WorldBuilder::Place::Kind;
  const bool isApplications =
      place.kind == Kind::application || place.kind == Kind::window || place.kind == Kind::element;
  if (line.damage) return;
  if (isApplications) inspectNames(line);
  // What a Mac has come to is not a mistake of somebody who wrote it.
  if (hasRunBefore(world_)) return;
  inspectConditions(line);
  if (place.kind != Kind::element) return;
  inspectFrame(line, place);
  reacting_.push_back({spotOf(line), place.application, place.element});
}

void Inspection::finish(bool couldBeRead) {
  if (hasRunBefore(world_)) return;
  if (couldBeRead && world_.frontmost == 0) warn({{1, nullptr}, "no application is in front"});
  std::map<std::size_t, std::map<std::string, int>> labels;
  for (const Placed& placed : reacting_) {
    const Application& application = world_.applications[placed.application];
    const Element* element = findElement(application, placed.element);
    if (element == nullptr) continue;
    for (const auto* reactions :
         {&element->onClick, &element->onRightClick, &element->onDoubleClick, &element->onSubmit}) {
      for (const Reaction& each : *reactions) {
        if (!each.target || each.elsewhere) continue;
        auto& counts = labels[placed.application];
        if (counts.empty()) counts = countLabels(application);
        const int count = counts[*each.target];
        if (count < 2) continue;
        warn({placed.spot,
              std::to_string(count) + " elements are labelled \"" + *each.target +
                  "\"; the first is meant",
              {},
              {},
              *each.target});
      }
    }
  }
}

}  // namespace simulator
