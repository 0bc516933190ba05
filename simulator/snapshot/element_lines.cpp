#include "simulator/snapshot/element_lines.h"

#include <algorithm>
#include <set>

#include "simulator/text/reaction_arguments.h"
#include "simulator/text/reactions.h"
#include "simulator/text/value_text.h"
#include "simulator/text/words.h"
#include "simulator/world/elements.h"
#include "simulator/world/roles.h"

namespace simulator {

namespace {

/// It stands for itself where a line wants a word.
bool isBare(const std::string& word) { return quotedWord(word) == word; }

std::string valueOf(const AttributeValue& value) {
  std::string text;
  writeValue(text, value);
  return text;
}

std::string timeOf(Microseconds time) { return spanText({time, time}); }

/// Elements are named by labels in such lines, which may not tell them apart.
bool isOfElements(const AttributeValue& value) {
  return std::holds_alternative<ElementLink>(value) ||
         std::holds_alternative<std::vector<ElementId>>(value);
}

/// A hash that is above what a line takes.
bool isTooLarge(const AttributeValue& value) {
  const auto* opaque = std::get_if<Opaque>(&value);
  return opaque != nullptr &&
         opaque->hash > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
}

/// Attributes as habits of a line, but for those that it says otherwise.
std::string attributesText(const std::map<std::string, AttributeValue>& attributes,
                           const std::set<std::string>& said) {
  std::string text;
  for (const auto& [name, value] : attributes) {
    if (said.contains(name) || !isBare(name) || isOfElements(value) || isTooLarge(value)) continue;
    text += " attribute " + name + valueOf(value);
  }
  return text;
}

std::string failingText(const std::map<std::string, ax::Error>& failing) {
  std::string text;
  for (const auto& [name, error] : failing) {
    const auto code = static_cast<std::int32_t>(error);
    if (isBare(name) && code < 0) text += " failing " + name + " " + std::to_string(code);
  }
  return text;
}

std::string frameText(const Rect& frame) {
  std::string text = " at";
  writeValue(text, Point{frame.x, frame.y});
  text += " size";
  writeValue(text, Size{frame.width, frame.height});
  return text;
}

/// The attributes that have words of their own.
class AttributeWords {
 public:
  explicit AttributeWords(const std::map<std::string, AttributeValue>& attributes)
      : attributes_(attributes) {}

  /// The word and the value behind it, where that is of this type and was not said; empty
  /// otherwise.
  template <class Value>
  std::string take(const char* word, const char* name) {
    const auto found = attributes_.find(name);
    if (found == attributes_.end() || said_.contains(name) ||
        !std::holds_alternative<Value>(found->second))
      return "";
    said_.insert(name);
    return std::string(word) + valueOf(found->second);
  }

  /// The word alone, where the value is this one.
  std::string takeIf(const char* word, const char* name, bool value) {
    const auto found = attributes_.find(name);
    if (found == attributes_.end() || found->second != AttributeValue(value)) return "";
    said_.insert(name);
    return word;
  }

  std::string takeSubrole() {
    const auto found = attributes_.find("AXSubrole");
    if (found == attributes_.end() || said_.contains("AXSubrole")) return "";
    const auto* subrole = std::get_if<std::string>(&found->second);
    if (subrole == nullptr || !isBare(*subrole)) return "";
    said_.insert("AXSubrole");
    return " subrole " + *subrole;
  }

  std::string takeSelection() {
    const auto found = attributes_.find("AXSelectedTextRange");
    if (found == attributes_.end()) return "";
    const auto* range = std::get_if<ax::Range>(&found->second);
    if (range == nullptr) return "";
    said_.insert("AXSelectedTextRange");
    std::string text = " selection";
    writeValue(text, *range);
    return text;
  }

  /// A value that `value` takes: no geometry, no elements.
  std::string takeValue() {
    std::string text = take<std::string>(" value", "AXValue");
    if (text.empty()) text = take<bool>(" value", "AXValue");
    if (text.empty()) text = take<std::int64_t>(" value", "AXValue");
    if (text.empty()) text = take<double>(" value", "AXValue");
    return text;
  }

  void say(const std::string& name) { said_.insert(name); }
  /// What comes of itself need not be said.
  void sayIf(const std::string& name, const std::string& value) {
    const auto found = attributes_.find(name);
    if (found != attributes_.end() && found->second == AttributeValue(value)) say(name);
  }
  std::string others() const { return attributesText(attributes_, said_); }

 private:
  const std::map<std::string, AttributeValue>& attributes_;
  std::set<std::string> said_;
};

std::string transformText(const Transform& transform) {
  std::string text = " transform";
  writeValue(text, transform.kind);
  if (transform.kind != Transform::Kind::first) return text;
  return text + " " + std::to_string(transform.characters) + " characters";
}

std::string conditionText(const Condition& condition) {
  return " only while " + inQuotes(condition.label) + (condition.negated ? " is not " : " is ") +
         inQuotes(condition.text);
}

std::string rejectingText(const Habits& habits) {
  std::string text;
  for (const auto& [name, error] : habits.rejecting) {
    const auto code = static_cast<std::int32_t>(error);
    if (isBare(name) && code < 0) text += " rejects " + name + " " + std::to_string(code);
  }
  return text;
}

std::string childrenText(Habits::Children children) {
  constexpr const char* words[] = {"", " grows", " grows deeper", " shrinks"};
  return words[static_cast<int>(children)];
}

/// What an element makes of texts that it is given.
std::string fieldText(const Habits& habits) {
  std::string text;
  for (const Transform& each : habits.transforms) text += transformText(each);
  if (habits.writes == Habits::Writes::ignored) text += " ignores writes";
  if (habits.writes == Habits::Writes::halved) text += " half of writes";
  if (habits.delay > 0) text += " late " + timeOf(habits.delay);
  if (habits.showsPlaceholder) text += " shows placeholder";
  if (habits.isComposer) text += habits.hidesValue ? " composer without value" : " composer";
  if (habits.takesFiles) text += " takes files";
  return text + rejectingText(habits);
}

std::string actionsText(const std::vector<std::string>& actions) {
  std::string list;
  for (const std::string& each : actions) {
    if (!isBare(each) || each.find(',') != each.npos) return "";
    list += (list.empty() ? "" : ",") + each;
  }
  return " actions " + (list.empty() ? "none" : list);
}

std::string habitsText(const Element& element, const Habits& habits) {
  std::string text;
  if (habits.givesActions) text += actionsText(element.actions);
  text += fieldText(habits);
  if (habits.onlyWhile) text += conditionText(*habits.onlyWhile);
  if (habits.stacks) text += " stacks";
  if (habits.scrolling == Habits::Scrolling::whole) text += " scrolls";
  if (habits.scrolling == Habits::Scrolling::lazy) text += " scrolls lazily";
  const auto code = static_cast<std::int32_t>(habits.actionError);
  if (code < 0) text += " replying " + std::to_string(code);
  return text + childrenText(habits.children);
}

std::string presenceText(const Element& element) {
  if (element.presence == Presence::whileHovered && element.parent != 0) return " while hovered";
  const bool isMenu = element.presence == Presence::whileOpen && element.role == "AXMenu";
  return isMenu ? " closed" : "";
}

std::string reactionsOf(const char* word, const std::vector<Reaction>& reactions) {
  return reactions.empty() ? "" : std::string(" ") + word + " " + reactionsText(reactions);
}

bool isFocused(const Application& application, const Element& element) {
  return application.focusedElement == element.id;
}

std::string labelText(const Element& element, AttributeWords& words) {
  const bool isDescribed = element.role == "AXStaticText" || takesText(element.role);
  return words.take<std::string>("", isDescribed ? "AXDescription" : "AXTitle");
}

std::string kindText(const Application& application) {
  constexpr const char* policies[] = {"", " accessory", " prohibited"};
  return (application.kind == ApplicationKind::chromium ? " chromium" : "") +
         std::string(policies[static_cast<int>(application.policy)]);
}

/// How it answers.
std::string answeringText(const Application& application) {
  std::string text;
  if (application.hangs) text += " hangs";
  if (application.answerDelay > 0) text += " answers after " + timeOf(application.answerDelay);
  if (application.rejectsEnabling) text += " rejects-enabling";
  if (application.treeOnDemand) text += " tree after " + timeOf(application.treeDelay);
  if (application.pasteDelay != Application().pasteDelay) {
    text += " pastes after " + timeOf(application.pasteDelay);
  }
  return text;
}

std::string bundleText(const Application& application) {
  const auto& identifier = application.bundleIdentifier;
  const auto& path = application.bundlePath;
  if (!path && !identifier) return " unbundled";
  std::string text;
  if (identifier) text += " bundle " + quotedWord(*identifier);
  if (path && *path != "/Applications/" + application.name.value_or("") + ".app") {
    text += " path " + inQuotes(*path);
  }
  return text;
}

/// The element of the window that a sheet lies on; null when the line cannot say which.
const Element* elementBelow(const World& world, const Application& application,
                            const Window& sheet) {
  const Window* below = findWindow(world, sheet.sheetOf);
  if (below == nullptr || below->owner != application.pid) return nullptr;
  return findElement(application, below->element);
}

bool holdsId(const std::vector<ElementId>& ids, ElementId id) {
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

/// How a window lies among others, and how it can be seen.
std::string placeText(const World& world, const Application& application, const Window& window,
                      const Element* element) {
  std::string text;
  bool isOpen = element != nullptr && holdsId(application.windows, element->id);
  const Element* below = element == nullptr ? nullptr : elementBelow(world, application, window);
  if (below != nullptr) {
    text += " sheet of " + std::to_string(window.sheetOf);
    isOpen = holdsId(below->children, element->id);
  }
  if (window.layer != 0) text += " layer " + std::to_string(window.layer);
  if (!window.onScreen) text += isOpen || element == nullptr ? " off-screen" : " closed";
  if (!window.capturable) text += " not-capturable";
  if (window.numberHidden) text += " unnumbered";
  if (window.listedNumber) text += " listed as " + std::to_string(*window.listedNumber);
  return text;
}

}  // namespace

std::string applicationLine(const World& world, const Application& application, LineStyle style) {
  const std::string pid = std::to_string(application.pid);
  std::string text = "app " + inQuotes(application.name.value_or("pid " + pid)) + " pid " + pid;
  if (style == LineStyle::least) return text;
  if (!application.name) text += " unnamed";
  text += bundleText(application) + kindText(application);
  if (world.frontmost == application.pid) text += " frontmost";
  if (application.hidden) text += " hidden";
  return text + answeringText(application) + attributesText(application.attributes, {}) +
         failingText(application.failing);
}

std::string windowLine(const World& world, const Application& application, const Window& window,
                       const Element* element, LineStyle style) {
  std::string text = "window " + std::to_string(window.number);
  if (window.title) text += " " + inQuotes(*window.title);
  if (element != nullptr) text += " id " + std::to_string(element->id);
  text += frameText(window.frame);
  if (element == nullptr) text += " no-element";
  if (style == LineStyle::least) return text;
  text += placeText(world, application, window, element);
  if (element == nullptr) return text;
  if (application.focusedWindow == element->id) text += " focused";
  AttributeWords words(element->attributes);
  if (window.title) words.say("AXTitle");
  if (window.sheetOf == 0) words.sayIf("AXSubrole", "AXStandardWindow");
  text += words.takeSubrole();
  return text + words.others() + failingText(element->failing);
}

std::string elementLine(const Application& application, const Element& element, LineStyle style) {
  const bool isNamed = element.role.starts_with("AX") && isBare(element.role);
  std::string text = isNamed ? element.role : "AXUnknown";
  if (style == LineStyle::least) {
    text += " id " + std::to_string(element.id);
    return element.frame ? text + frameText(*element.frame) : text;
  }
  AttributeWords words(element.attributes);
  text += labelText(element, words) + " id " + std::to_string(element.id);
  if (element.frame) text += frameText(*element.frame);
  text += words.takeValue();
  text += words.take<std::string>(" description", "AXDescription");
  text += words.take<std::string>(" placeholder", "AXPlaceholderValue");
  text += words.take<std::string>(" help", "AXHelp");
  text += words.takeSubrole();
  text += words.takeIf(" disabled", "AXEnabled", false);
  text += words.takeIf(" modal", "AXModal", true);
  if (isFocused(application, element)) text += " focused";
  text += words.takeSelection();
  text += words.others() + failingText(element.failing) + presenceText(element);
  text += habitsText(element, habitsOf(application, element.id));
  return text + reactionsOf("press:", element.onClick) +
         reactionsOf("right:", element.onRightClick) +
         reactionsOf("double:", element.onDoubleClick) + reactionsOf("submit:", element.onSubmit);
}

}  // namespace simulator
