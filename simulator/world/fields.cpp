#include "simulator/world/fields.h"

#include <algorithm>
#include <utility>

#include "base/utf16.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/marking.h"
#include "simulator/world/pasteboard.h"

namespace simulator {

namespace {

constexpr const char* valueAttribute = "AXValue";
constexpr const char* selectionAttribute = "AXSelectedTextRange";
constexpr const char* selectedAttribute = "AXSelectedText";
constexpr const char* markedAttribute = "AXTextInputMarkedRange";
constexpr double lineHeight = 18;  // points, of a composer's static texts

std::string placeholderOf(const Element& element) {
  const std::string* text = textAttribute(element, "AXPlaceholderValue");
  return text == nullptr ? "" : *text;
}

/// What a reader of the field sees.
std::string shownText(const Application& application, const Element& element) {
  std::string text(textOf(element));
  if (text.empty() && habitsOf(application, element.id).showsPlaceholder) {
    return placeholderOf(element);
  }
  return isSecure(element) ? bullets(text) : text;
}

/// The static texts in the element, in the order in which they are read.
std::vector<ElementId> staticTextsIn(const Application& application, ElementId id) {
  std::vector<ElementId> found;
  std::vector<ElementId> stack{id};
  while (!stack.empty()) {
    const Element* element = findElement(application, stack.back());
    stack.pop_back();
    if (element == nullptr) continue;
    if (element->role == "AXStaticText") found.push_back(element->id);
    for (auto child = element->children.rbegin(); child != element->children.rend(); ++child) {
      const Element* below = findElement(application, *child);
      if (below != nullptr && below->parent == element->id) stack.push_back(*child);
    }
  }
  return found;
}

/// Makes the static texts anew, as a web page does: what was held of the old ones is void, and a
/// caller that kept one finds it gone.
void mirrorText(Application& application, ElementId id) {
  for (const ElementId old : staticTextsIn(application, id)) removeElement(application, old);
  const Element& composer = *findElement(application, id);
  const std::optional<Rect> frame = composer.frame;
  const WindowNumber window = composer.window;
  std::vector<ElementId> others = composer.children;
  std::vector<ElementId> texts;
  double y = frame ? frame->y + 7 : 0;
  for (std::string& line : filledLines(shownText(application, composer))) {
    std::optional<Rect> place;
    if (frame) place = Rect{frame->x + 9, y, std::max(frame->width - 18, 0.0), lineHeight};
    y += lineHeight;
    Element& text = addElement(application, id, window, place, "AXStaticText");
    text.attributes[valueAttribute] = std::move(line);
    texts.push_back(text.id);
  }
  texts.insert(texts.end(), others.begin(), others.end());
  findElement(application, id)->children = std::move(texts);
}

/// Makes the text the field's, after its transforms; the caret goes to its place or to the end.
void holdText(Application& application, ElementId id, std::string text,
              std::optional<std::int64_t> caret) {
  putText(application, id, transformed(std::move(text), habitsOf(application, id).transforms));
  Element& element = *findElement(application, id);
  const std::int64_t length = utf16Length(textOf(element));
  element.attributes[selectionAttribute] = ax::Range{std::min(caret.value_or(length), length), 0};
}

/// The write has its effect.
void land(Application& application, ElementId id, const std::string& name, std::string text) {
  Element& element = *findElement(application, id);
  makeWayForText(application, element);
  if (habitsOf(application, id).writes == Habits::Writes::halved) text = firstHalf(text);
  if (name == selectedAttribute) {
    typeInto(application, id, selectionOf(element), text);
  } else {
    holdText(application, id, std::move(text), std::nullopt);
  }
}

/// What takes a paste: a field that is enabled, or what takes files.
bool takesPaste(const Application& application, const Element& element) {
  return isEnabled(element) &&
         (isTextInput(element) || habitsOf(application, element.id).takesFiles);
}

/// Where the picture of an attached file lies: at the foot, behind those that are there.
std::optional<Rect> attachmentFrame(const Application& application, ElementId id) {
  const Element& element = *findElement(application, id);
  if (!element.frame) return std::nullopt;
  const auto isPicture = [&](ElementId child) {
    const Element* each = findElement(application, child);
    return each != nullptr && each->role == "AXImage";
  };
  const auto before = std::count_if(element.children.begin(), element.children.end(), isPicture);
  const Rect& around = *element.frame;
  const double side = std::min(48.0, around.height - 4);
  const double x = around.x + 4 + static_cast<double>(before) * (side + 4);
  return Rect{x, around.y + around.height - side - 2, side, side};
}

void attach(Application& application, ElementId id, const std::vector<std::string>& paths) {
  const WindowNumber window = findElement(application, id)->window;
  for (const std::string& path : paths) {
    const std::optional<Rect> frame = attachmentFrame(application, id);
    Element& picture = addElement(application, id, window, frame, "AXImage");
    picture.attributes["AXTitle"] = path.substr(path.rfind('/') + 1);
    picture.attributes["AXURL"] = fileUrl(path);
  }
}

/// What came of a paste.
struct Pasted {
  bool landed = false;
  std::string text;     // that came, or the paths of files
  std::string outcome;  // why nothing did, or a sentence for the journal
};

/// The application reads the pasteboard, and what asked for a paste takes what is there now.
Pasted landPaste(const World& world, Application& application, ElementId id) {
  Element* element = findElement(application, id);
  if (element == nullptr) return {false, "", "what asked for the paste is gone"};
  if (application.hangs) return {false, "", "the application hangs"};
  const std::string name = described(*element);
  // What is on the pasteboard now, not what was there when the paste was asked for: who gives the
  // user's clipboard back too early pastes that.
  const std::vector<std::string> files = pastedFiles(world.pasteboard);
  const auto text = pastedText(world.pasteboard);
  if (!files.empty() && habitsOf(application, id).takesFiles) {
    attach(application, id, files);
    return {true, text.value_or(""), "attached files to " + name};
  }
  if (!text) return {false, "", "there is neither text nor a file on the pasteboard"};
  if (!isTextInput(*element)) return {false, *text, name + " takes no text"};
  makeWayForText(application, *element);
  typeInto(application, id, selectionOf(*element), *text);
  return {true, *text, (files.empty() ? "pasted into " : "pasted paths as text into ") + name};
}

ax::Error writeSelection(Element& element, const AttributeValue& value) {
  const auto* range = std::get_if<ax::Range>(&value);
  const std::int64_t length = utf16Length(textOf(element));
  const bool fits = range != nullptr && range->location >= 0 && range->length >= 0 &&
                    range->location <= length && range->length <= length - range->location;
  if (!fits) return ax::Error::illegalArgument;
  element.attributes[selectionAttribute] = *range;
  return ax::Error::success;
}

void defer(World& world, PendingWrite write) {
  // Behind those of the same time: writes land in the order in which they were made.
  const auto place =
      std::upper_bound(world.pending.begin(), world.pending.end(), write.due,
                       [](Microseconds due, const PendingWrite& each) { return due < each.due; });
  world.pending.insert(place, std::move(write));
}

/// A write, or a paste, has its effect, or finds its field gone.
SettledWrite settle(World& world, PendingWrite write) {
  SettledWrite settled;
  settled.at = write.due;
  settled.actor = write.actor;
  settled.pid = write.pid;
  settled.attribute = write.attribute;
  settled.text = write.text;
  Application* application = findApplication(world, write.pid);
  const Element* element =
      application == nullptr ? nullptr : findElement(*application, write.element);
  if (element == nullptr) {
    settled.outcome = "the element is gone";
    return settled;
  }
  settled.element = elementName(*element);
  if (write.pastes) {
    Pasted pasted = landPaste(world, *application, write.element);
    settled.landed = pasted.landed;
    settled.text = std::move(pasted.text);
    settled.outcome = std::move(pasted.outcome);
    return settled;
  }
  land(*application, write.element, write.attribute, std::move(write.text));
  settled.landed = true;
  settled.outcome = heldAfter(*findElement(*application, write.element), settled.text);
  return settled;
}

}  // namespace

void putText(Application& application, ElementId id, std::string text) {
  Element* element = findElement(application, id);
  if (element == nullptr) return;
  setText(*element, std::move(text));
  if (markedIn(application, id)) commitMarked(application);
  if (habitsOf(application, id).isComposer) mirrorText(application, id);
}

void addText(Application& application, ElementId id, const std::string& text) {
  const Element* element = findElement(application, id);
  if (element != nullptr) putText(application, id, std::string(textOf(*element)) + text);
}

ax::Range selectionOf(const Element& element) {
  const std::int64_t length = utf16Length(textOf(element));
  const auto found = element.attributes.find(selectionAttribute);
  const auto* held =
      found == element.attributes.end() ? nullptr : std::get_if<ax::Range>(&found->second);
  if (held == nullptr) return {};
  const std::int64_t location = std::clamp(held->location, std::int64_t{0}, length);
  return {location, std::clamp(held->length, std::int64_t{0}, length - location)};
}

std::string selectedText(const Element& element) {
  const ax::Range range = selectionOf(element);
  const std::string_view text = textOf(element);
  const std::size_t begin = driver::utf16Offset(text, static_cast<std::size_t>(range.location));
  const std::size_t end =
      driver::utf16Offset(text, static_cast<std::size_t>(range.location + range.length));
  return std::string(text.substr(begin, end - begin));
}

void typeInto(Application& application, ElementId id, const ax::Range& range,
              const std::string& text) {
  const Element& element = *findElement(application, id);
  holdText(application, id,
           driver::utf16Replaced(textOf(element), static_cast<std::size_t>(range.location),
                                 static_cast<std::size_t>(range.length), text),
           range.location + utf16Length(text));
}

std::string requestPaste(World& world, Application& application) {
  const Element* element = findElement(application, application.focusedElement);
  if (element == nullptr || !takesPaste(application, *element)) return "nothing takes the paste";
  std::string sentence = "asked for a paste into " + described(*element);
  if (application.pasteDelay == 0) return landPaste(world, application, element->id).outcome;
  defer(world, {.due = world.present + application.pasteDelay,
                .pid = application.pid,
                .element = element->id,
                .attribute = "",
                .text = "",
                .pastes = true,
                .actor = world.actor});
  return sentence;
}

void focusField(Application& application, Element& element) {
  if (application.focusedElement != element.id) commitMarked(application);
  application.focusedElement = element.id;
  element.attributes.emplace(selectionAttribute, ax::Range{utf16Length(textOf(element)), 0});
}

std::optional<AttributeResult> readField(const Application& application, const Element& element,
                                         const std::string& name) {
  const bool isText = name == valueAttribute && textAttribute(element, valueAttribute) != nullptr;
  if (isText && habitsOf(application, element.id).hidesValue) {
    return AttributeResult{std::nullopt, ax::Error::noValue};
  }
  if (isText) return AttributeResult{shownText(application, element), ax::Error::success};
  if (element.attributes.count(name) > 0) return std::nullopt;
  if (name == selectionAttribute) return AttributeResult{ax::Range{}, ax::Error::success};
  if (name == markedAttribute) {
    const auto marked = markedIn(application, element.id);
    if (!marked) return std::nullopt;
    return AttributeResult{*marked, ax::Error::success};
  }
  if (name == "AXNumberOfCharacters") {
    return AttributeResult{utf16Length(textOf(element)), ax::Error::success};
  }
  if (name != selectedAttribute) return std::nullopt;
  if (isSecure(element)) return AttributeResult{std::nullopt, ax::Error::noValue};
  return AttributeResult{selectedText(element), ax::Error::success};
}

bool isFieldAttribute(const Element& element, const std::string& name) {
  if (name == selectionAttribute) return true;
  if (name == valueAttribute) return textAttribute(element, valueAttribute) != nullptr;
  return name == selectedAttribute && element.attributes.count(name) == 0;
}

ax::Error writeField(World& world, Application& application, Element& element,
                     const std::string& name, const AttributeValue& value, Microseconds now) {
  if (!isEnabled(element)) return ax::Error::attributeUnsupported;
  if (name == selectionAttribute) return writeSelection(element, value);
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) return ax::Error::illegalArgument;
  const Habits& habits = habitsOf(application, element.id);
  if (habits.writes == Habits::Writes::ignored) return ax::Error::success;
  if (habits.delay > 0) {
    defer(world, {.due = now + habits.delay,
                  .pid = application.pid,
                  .element = element.id,
                  .attribute = name,
                  .text = *text,
                  .actor = world.actor});
  } else {
    land(application, element.id, name, *text);
  }
  return ax::Error::success;
}

std::string heldAfter(const Element& element, const std::string& text) {
  if (textOf(element) == text) return "";
  return "it holds \"" + std::string(textOf(element)) + "\" now";
}

std::vector<SettledWrite> settleWrites(World& world, Microseconds now) {
  std::vector<SettledWrite> settled;
  world.present = std::max(world.present, now);
  while (!world.pending.empty() && world.pending.front().due <= now) {
    PendingWrite write = std::move(world.pending.front());
    world.pending.erase(world.pending.begin());
    settled.push_back(settle(world, std::move(write)));
  }
  return settled;
}

void settleComposer(Application& application, ElementId id) {
  if (!textOf(*findElement(application, id)).empty()) {
    mirrorText(application, id);
    return;
  }
  std::string text;
  for (const ElementId each : staticTextsIn(application, id)) {
    const std::string_view line = textOf(*findElement(application, each));
    if (!text.empty() && !line.empty()) text += '\n';
    text += line;
  }
  Element& element = *findElement(application, id);
  element.attributes[valueAttribute] = text;
  if (text.empty()) mirrorText(application, id);
}

}  // namespace simulator
