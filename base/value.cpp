#include "base/value.h"

namespace driver {

std::optional<std::vector<std::string>> textsIn(const Value& value) {
  const auto* list = value.get<Value::List>();
  if (list == nullptr) return std::nullopt;
  std::vector<std::string> texts;
  for (const Value& item : *list) {
    const auto* text = item.get<std::string>();
    if (text == nullptr) return std::nullopt;
    texts.push_back(*text);
  }
  return texts;
}

}  // namespace driver
