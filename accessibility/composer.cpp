#include "accessibility/composer.h"

#include <cstddef>

#include "accessibility/labels.h"
#include "accessibility/roles.h"
#include "base/utf16.h"

namespace driver {

namespace {

constexpr std::size_t elementsMax = 4096;
constexpr int depthMax = 80;
constexpr std::size_t unitsMax = 40'000;  // UTF-16, each text and the line break after it

struct Entry {
  Snapshot* element = nullptr;
  int depth = 0;
};

bool tellsChildren(Snapshot& element) {
  const ax::Error error = element.error(Attribute::children);
  return error == ax::Error::success || error == ax::Error::noValue ||
         error == ax::Error::attributeUnsupported;
}

/// Joins texts as long as they are not too long together.
class Lines {
 public:
  bool add(const std::string* line) {
    if (line == nullptr || line->empty()) return true;
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
    if (depth > 0 && hasRole(textRoles, element->role())) return {};
    if (element->role() == "AXStaticText" && !lines.add(element->text(Attribute::value))) return {};
    if (!tellsChildren(*element)) return {};
    std::vector<Snapshot>& children = element->children();
    // All of them would be visited.
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

}  // namespace driver
