#include "tests/oracle/elements.h"

#include <algorithm>
#include <cmath>

#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

bool isTextRole(const std::string& role) {
  return role == "AXTextArea" || role == "AXTextField" || role == "AXComboBox" ||
         role == "AXSearchField";
}

bool isActionable(const std::string& role) {
  const std::vector<std::string> others = {
      "AXButton",      "AXLink", "AXMenuItem", "AXMenuButton", "AXPopUpButton",       "AXCheckBox",
      "AXRadioButton", "AXRow",  "AXCell",     "AXTab",        "AXDisclosureTriangle"};
  return isTextRole(role) || std::find(others.begin(), others.end(), role) != others.end();
}

bool isTextInput(Stage& stage, const Element& element) {
  return isTextRole(roleOf(stage, element)) || stage.isTrue(element, "AXEditable");
}

std::string roleOf(Stage& stage, const Element& element) {
  return stage.text(element, "AXRole").value_or("");
}

std::string labelOf(Stage& stage, const Element& element) {
  for (const char* name : {"AXTitle", "AXDescription", "AXPlaceholderValue", "AXHelp"}) {
    const auto text = stage.text(element, name);
    if (text && !text->empty()) return *text;
  }
  return "";
}

std::string innerText(Stage& stage, const Element& element, TextBounds bounds) {
  std::vector<Element> stack = {element};
  std::vector<std::string> parts;
  std::size_t budget = bounds.elements;
  while (!stack.empty() && budget > 0) {
    const Element top = stack.back();
    stack.pop_back();
    --budget;
    if (roleOf(stage, top) == "AXStaticText") {
      const auto value = stage.text(top, "AXValue");
      if (value && !value->empty()) parts.push_back(*value);
    }
    const auto children = stage.list(top, "AXChildren").value_or(std::vector<Element>());
    stack.insert(stack.end(), children.rbegin(), children.rend());
  }
  return firstCharacters(joined(parts, " "), bounds.characters);
}

FieldText fieldText(Stage& stage, const Element& field) {
  std::vector<std::pair<Element, int>> stack = {{field, 0}};
  std::vector<std::string> parts;
  std::size_t visited = 0;
  std::int64_t units = 0;
  while (!stack.empty()) {
    const auto [element, depth] = stack.back();
    stack.pop_back();
    if (visited == 4096 || depth >= 81) return {};
    ++visited;
    const std::string role = roleOf(stage, element);
    if (depth >= 1 && isTextRole(role)) return {};
    if (role == "AXStaticText") {
      const auto value = stage.text(element, "AXValue");
      if (value && !value->empty()) {
        parts.push_back(*value);
        units += utf16Length(*value) + 1;
        if (units >= 40'001) return {};
      }
    }
    const Reading children = stage.read(element, "AXChildren");
    const bool isLeaf =
        children.error == ax::Error::noValue || children.error == ax::Error::attributeUnsupported;
    if (children.error != ax::Error::success && !isLeaf) return {};
    const auto found = stage.list(element, "AXChildren").value_or(std::vector<Element>());
    for (auto child = found.rbegin(); child != found.rend(); ++child) {
      stack.emplace_back(*child, depth + 1);
    }
  }
  return {joined(parts, "\n"), true};
}

Json describe(Stage& stage, const Element& element) {
  const std::string role = roleOf(stage, element);
  Json description = {{"role", role}, {"label", labelOf(stage, element)}};
  if (const auto value = stage.text(element, "AXValue")) {
    description["value"] = firstCharacters(*value, 2000);
  }
  if (isTextRole(role)) {
    const FieldText field = fieldText(stage, element);
    if (!field.text.empty() || !field.isComplete) {
      description["textValue"] = field.text;
      description["textValueComplete"] = field.isComplete;
    }
  }
  if (const auto frame = stage.frame(element)) description["frame"] = frameJson(*frame);
  return description;
}

Pid enabledApp(Stage& stage, const std::string& name) {
  const auto pid = runningApp(stage, name);
  if (!pid) throw Failure{"app not running: " + name};
  stage.write({*pid, 0}, "AXManualAccessibility", true);
  stage.write({*pid, 0}, "AXEnhancedUserInterface", true);
  return *pid;
}

void walk(Stage& stage, const std::vector<Element>& roots, WalkBounds bounds, Siblings order,
          const std::function<bool(const Element& element, int depth)>& visit) {
  std::vector<std::pair<Element, int>> stack;
  for (const Element& root : roots) stack.emplace_back(root, 0);
  for (std::size_t visited = 0; visited < bounds.elements && !stack.empty(); ++visited) {
    const auto [element, depth] = stack.back();
    stack.pop_back();
    if (!visit(element, depth)) return;
    if (depth > bounds.depth) continue;
    auto children = stage.list(element, "AXChildren").value_or(std::vector<Element>());
    if (order == Siblings::firstFirst) std::reverse(children.begin(), children.end());
    for (const Element& child : children) stack.emplace_back(child, depth + 1);
  }
}

std::optional<Element> actionableAt(Stage& stage, Pid pid, Point point) {
  std::optional<Element> element = stage.elementAt(pid, point);
  for (int examined = 0; element && examined < 12; ++examined) {
    const bool found =
        isActionable(roleOf(stage, *element)) || stage.isTrue(*element, "AXEditable");
    if (!found) {
      element = stage.link(*element, "AXParent");
      continue;
    }
    if (!scopeOf(stage)) return element;
    const auto window = stage.link(*element, "AXWindow");
    return window && isWindowInScope(stage, *window) ? element : std::nullopt;
  }
  return std::nullopt;
}

namespace {

struct Candidate {
  Element element;
  int rank = 0;
  double distance = 0;
};

std::string matchLabel(Stage& stage, const Element& element, const std::string& role) {
  const std::string label = normalizedLabel(labelOf(stage, element));
  if (!label.empty() || isTextRole(role)) return label;
  return normalizedLabel(innerText(stage, element));
}

std::optional<int> rankOf(const std::string& label, const std::string& wanted,
                          const std::string& role, bool hasPoint) {
  if (!label.empty() && same(label, wanted)) return 0;
  if (!label.empty() && (containsLabel(label, wanted) || containsLabel(wanted, label))) return 1;
  if (!label.empty() || !hasPoint) return std::nullopt;
  const std::string name = joined(splitAt(wanted, " "), "");
  return same(roleName(role), name) ? std::optional(2) : std::nullopt;
}

double distanceTo(const Rect& frame, Point point) {
  if (point == noPoint || holds(frame, point)) return 0;
  const double across = frame.x + frame.width / 2 - point.x;
  const double down = frame.y + frame.height / 2 - point.y;
  return std::sqrt(across * across + down * down);
}

std::optional<Candidate> candidateOf(Stage& stage, const Element& element,
                                     const std::string& wanted, Point near) {
  const std::string role = roleOf(stage, element);
  if (!isActionable(role)) return std::nullopt;
  const auto frame = stage.frame(element);
  if (!frame || !(frame->width > 1)) return std::nullopt;
  const auto rank = rankOf(matchLabel(stage, element, role), wanted, role, !(near == noPoint));
  if (!rank) return std::nullopt;
  const double distance = distanceTo(*frame, near);
  if (!(distance <= 160)) return std::nullopt;
  return Candidate{element, *rank, distance};
}

}  // namespace

std::optional<Match> bestMatch(Stage& stage, Pid pid, const std::string& label, Point near) {
  const std::string wanted = normalizedLabel(label);
  std::optional<Candidate> best;
  if (!wanted.empty()) {
    walk(stage, windowsInScope(stage, pid), searchBounds, Siblings::lastFirst,
         [&](const Element& element, int /*depth*/) {
           const auto found = candidateOf(stage, element, wanted, near);
           if (found && (!best || found->rank < best->rank ||
                         (found->rank == best->rank && found->distance < best->distance))) {
             best = found;
           }
           return true;
         });
  }
  const char* kinds[] = {"label", "label~", "role"};
  if (best) return Match{best->element, kinds[best->rank]};
  const auto hit = actionableAt(stage, pid, near);
  if (!hit) return std::nullopt;
  return Match{*hit, "hit"};
}

std::vector<Element> buttonsIn(Stage& stage, const Element& root) {
  std::vector<Element> buttons;
  walk(stage, {root}, {searchBounds.elements, 29}, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         if (roleOf(stage, element) == "AXButton" && !labelOf(stage, element).empty()) {
           buttons.push_back(element);
         }
         return true;
       });
  return buttons;
}

}  // namespace oracle
