#include "accessibility/field_content.h"

#include <algorithm>

#include "accessibility/composer.h"
#include "accessibility/labels.h"
#include "platform/text.h"

namespace driver {

std::string contentOf(Snapshot& field, const std::vector<std::string>& chrome) {
  const std::string* value = field.text(Attribute::value);
  return value == nullptr || isAmong(*value, chrome) ? "" : *value;
}

bool holdsText(Snapshot& field, const std::string& expected,
               const std::vector<std::string>& chrome) {
  const ComposerText composer = axComposerText(field, Batch(structureAttributes));
  if (!composer.complete) return false;
  return sameText(composer.text.empty() ? contentOf(field, chrome) : composer.text, expected);
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
