#include "input/key_codes.h"

#include <algorithm>

namespace driver {

std::optional<std::uint16_t> keyCodeNamed(std::string_view name) {
  for (const KeyName& key : keyCodes) {
    if (key.name == name) return key.code;
  }
  return std::nullopt;
}

std::optional<quartz::Modifier> modifierNamed(std::string_view word) {
  if (word.empty()) return std::nullopt;
  for (const ModifierKey& key : modifierKeys) {
    if (std::find(key.words.begin(), key.words.end(), word) != key.words.end()) return key.flag;
  }
  return std::nullopt;
}

std::optional<std::string_view> characterOfKey(std::uint16_t code) {
  for (const KeyName& key : keyCodes) {
    if (key.code == code && key.name.size() == 1) return key.name;
  }
  return std::nullopt;
}

}  // namespace driver
