#include "simulator/world/element_text.h"

#include <utility>

#include "base/utf16.h"
#include "simulator/world/roles.h"

namespace simulator {

namespace {

constexpr std::size_t longestCharacter = 4;  // bytes

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

std::int64_t utf16Length(std::string_view text) {
  return static_cast<std::int64_t>(driver::utf16Length(text));
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) count += isContinuation(c) ? 0U : 1U;
  return count;
}

std::string_view textOf(const Element& element) {
  const auto found = element.attributes.find("AXValue");
  if (found == element.attributes.end()) return {};
  const auto* text = std::get_if<std::string>(&found->second);
  return text == nullptr ? std::string_view() : *text;
}

void setText(Element& element, std::string text) {
  if (takesText(element.role)) {
    element.attributes["AXSelectedTextRange"] = ax::Range{utf16Length(text), 0};
  }
  element.attributes["AXValue"] = std::move(text);
}

void removeLastCharacter(Element& element) {
  std::string text(textOf(element));
  for (std::size_t taken = 0; taken < longestCharacter && !text.empty(); ++taken) {
    const bool wasContinuation = isContinuation(text.back());
    text.pop_back();
    if (!wasContinuation) break;
  }
  setText(element, std::move(text));
}

}  // namespace simulator
