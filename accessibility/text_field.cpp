#include "accessibility/text_field.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "accessibility/element.h"
#include "accessibility/labels.h"
#include "accessibility/roles.h"
#include "accessibility/walk.h"
#include "base/utf16.h"
#include "platform/text.h"

namespace driver {

namespace {

// Parents may form a circle, as a wrong application tells them.
constexpr int levelsMax = 40;

// A text area is none of them: what somebody has written there is worth asking about in a dialog
// too.
constexpr std::array<std::string_view, 3> singleLineRoles = {"AXTextField", "AXComboBox",
                                                             "AXSearchField"};
constexpr std::array<std::string_view, 2> transientRoles = {"AXSheet", "AXPopover"};
constexpr std::array<std::string_view, 3> dialogSubroles = {"AXDialog", "AXSystemDialog",
                                                            "AXFloatingWindow"};

/// The application's own answer; none when it is outside the window scope.
std::optional<ax::Element> focusedElement(const ax::Element& application) {
  std::optional<ax::Element> focused = axElement(application, "AXFocusedUIElement");
  if (!focused || !isInWindowScope(*focused)) return std::nullopt;
  return focused;
}

}  // namespace

bool isTextInput(Snapshot& element) {
  return hasRole(textRoles, element.role()) || element.isTrue(Attribute::editable);
}

bool isTransientField(Snapshot& field) {
  if (!hasRole(singleLineRoles, field.role())) return false;
  const Batch batch({Attribute::role, Attribute::subrole, Attribute::parent});
  std::optional<ax::Element> parent = field.related(Attribute::parent);
  for (int level = 0; parent && level < levelsMax; ++level) {
    Snapshot now(*parent);
    now.read(batch);
    if (hasRole(transientRoles, now.role())) return true;
    if (now.role() == "AXWindow") {
      const std::string* subrole = now.text(Attribute::subrole);
      return subrole != nullptr && hasRole(dialogSubroles, *subrole);
    }
    parent = now.related(Attribute::parent);
  }
  return false;
}

std::optional<Snapshot> axFocused(const ax::Element& application) {
  if (auto focused = focusedElement(application)) return Snapshot(std::move(*focused));
  // The application names the element of its key window. Each of its other windows keeps a focus of
  // its own, of which only the element itself tells.
  std::optional<Snapshot> found;
  Walk walk(axWindows(application), {Attribute::role, Attribute::editable, Attribute::focused},
            controlBounds);
  while (Snapshot* element = walk.next()) {
    if (!isTextInput(*element) || !element->isTrue(Attribute::focused)) continue;
    if (found) return std::nullopt;
    found = walk.take();
  }
  return found;
}

namespace {

// What is larger is a document, and no field that an agent fills in.
constexpr std::size_t elementsMax = 4096;
constexpr int depthMax = 80;
constexpr std::size_t unitsMax = 40'000;  // UTF-16, each text and the line break after it

struct Entry {
  Snapshot* element = nullptr;
  int depth = 0;
};

/// Two of the errors say that there are none. After any other the field may hold more than is read.
bool tellsChildren(Snapshot& element) {
  const ax::Error error = element.error(Attribute::children);
  return error == ax::Error::success || error == ax::Error::noValue ||
         error == ax::Error::attributeUnsupported;
}

/// Joins texts as long as they are not too long together.
class Lines {
 public:
  bool add(const std::string* line) {
    if (line == nullptr) return true;
    units_ += utf16Length(*line) + 1;
    if (units_ > unitsMax) return false;
    if (!joined_.empty()) joined_ += '\n';
    joined_ += *line;
    return true;
  }

  const std::string& joined() const { return joined_; }

 private:
  std::string joined_;
  std::size_t units_ = 0;
};

}  // namespace

ComposerText axComposerText(Snapshot& field, const Batch& each) {
  Lines lines;
  std::vector<Entry> stack = {{&field, 0}};
  for (std::size_t visits = 1; !stack.empty(); ++visits) {
    const auto [element, depth] = stack.back();
    stack.pop_back();
    if (depth > depthMax) return {};
    element->read(each);
    // Whose text it is that stands in a field inside a field, nobody can tell.
    if (depth > 0 && hasRole(textRoles, element->role())) return {};
    if (!lines.add(staticText(*element))) return {};
    if (!tellsChildren(*element)) return {};
    std::vector<Snapshot>& children = element->children();
    // All of them would be visited, so it is known beforehand that there are too many.
    if (visits + stack.size() + children.size() > elementsMax) return {};
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      stack.push_back({&*child, depth + 1});
    }
  }
  return {lines.joined(), true};
}

std::vector<std::string> chromeTexts(Snapshot& field) {
  field.read(labelAttributes);
  const std::string* placeholder = field.text(Attribute::placeholder);
  std::vector<std::string> texts;
  if (placeholder != nullptr) texts.push_back(squashed(*placeholder));
  texts.push_back(squashed(axLabel(field)));
  std::erase(texts, "");
  return texts;
}

std::string contentOf(Snapshot& field, const std::vector<std::string>& chrome) {
  const std::string* value = field.text(Attribute::value);
  return value == nullptr || isAmong(*value, chrome) ? "" : *value;
}

bool holdsText(Snapshot& field, const ComposerText& shown, const std::string& expected,
               const std::vector<std::string>& chrome) {
  // Composers of web pages show each line as a text of its own, whatever their value says.
  if (!shown.complete) return false;
  return sameText(shown.text.empty() ? contentOf(field, chrome) : shown.text, expected);
}

bool isAmong(const std::string& text, const std::vector<std::string>& squashedTexts) {
  const std::string plain = squashed(text);
  return std::any_of(squashedTexts.begin(), squashedTexts.end(),
                     [&](const std::string& other) { return text::equal(plain, other); });
}

bool sameText(const std::string& a, const std::string& b) {
  return text::equal(squashed(a), squashed(b));
}

}  // namespace driver
