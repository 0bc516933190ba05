#include "accessibility/labels.h"

#include "platform/text.h"

namespace driver {

std::string squashed(std::string_view text) {
  std::string joined;
  for (const std::string& word : text::words(text)) {
    if (!joined.empty()) joined += ' ';
    joined += word;
  }
  return joined;
}

std::string normalizedLabel(std::string_view text) { return squashed(text::lowercase(text)); }

std::string comparableLabel(std::string_view text) {
  // File names come decomposed, and what an agent writes is composed: "é" is both.
  return text::canonical(normalizedLabel(text));
}

std::string roleName(std::string_view role) {
  if (role.starts_with("AX")) role.remove_prefix(2);
  return text::lowercase(role);
}

}  // namespace driver
