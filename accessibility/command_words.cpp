#include "accessibility/command_words.h"

namespace driver {

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
  std::string result;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) result += separator;
    result += text;
  }
  return result;
}

std::int32_t codeOf(ax::Error error) { return static_cast<std::int32_t>(error); }

Reply actionReply(ax::Error error) {
  return {{"ok", error == ax::Error::success}, {"axError", codeOf(error)}};
}

}  // namespace driver
