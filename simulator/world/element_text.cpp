#include "simulator/world/element_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "base/utf16.h"
#include "simulator/world/roles.h"

namespace simulator {

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";
constexpr std::string_view bullet = "\xE2\x80\xA2";

std::string firstCharacters(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (std::size_t seen = 0; end < text.size(); ++end) {
    if (!continuesCharacter(text[end]) && seen++ == count) break;
  }
  return std::string(text.substr(0, end));
}

std::string trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == text.npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(blanks) + 1 - first));
}

std::string shifted(std::string text, char first, char last, int by) {
  for (char& c : text) {
    if (c >= first && c <= last) c = static_cast<char>(c + by);
  }
  return text;
}

}  // namespace

std::int64_t utf16Length(std::string_view text) {
  return static_cast<std::int64_t>(driver::utf16Length(text));
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) count += continuesCharacter(c) ? 0U : 1U;
  return count;
}

const std::string* textAttribute(const Element& element, const std::string& name) {
  const auto found = element.attributes.find(name);
  return found == element.attributes.end() ? nullptr : std::get_if<std::string>(&found->second);
}

std::string_view textOf(const Element& element) {
  const std::string* text = textAttribute(element, "AXValue");
  return text == nullptr ? std::string_view() : *text;
}

std::string valueText(const Element& element) {
  const auto found = element.attributes.find("AXValue");
  if (found == element.attributes.end()) return "";
  if (const auto* text = std::get_if<std::string>(&found->second)) return *text;
  if (const auto* flag = std::get_if<bool>(&found->second)) return *flag ? "true" : "false";
  if (const auto* integer = std::get_if<std::int64_t>(&found->second)) {
    return std::to_string(*integer);
  }
  const auto* number = std::get_if<double>(&found->second);
  return number == nullptr || !std::isfinite(*number) ? "" : driver::decimalText(*number);
}

void setText(Element& element, std::string text) {
  if (takesText(element.role)) {
    element.attributes["AXSelectedTextRange"] = ax::Range{utf16Length(text), 0};
  }
  element.attributes["AXValue"] = std::move(text);
}

std::string transformed(std::string text, const std::vector<Transform>& transforms) {
  constexpr int toLower = 'a' - 'A';
  for (const Transform& each : transforms) {
    switch (each.kind) {
      case Transform::Kind::upper:
        text = shifted(std::move(text), 'a', 'z', -toLower);
        break;
      case Transform::Kind::lower:
        text = shifted(std::move(text), 'A', 'Z', toLower);
        break;
      case Transform::Kind::trim:
        text = trimmed(text);
        break;
      case Transform::Kind::oneLine:
        std::replace(text.begin(), text.end(), '\n', ' ');
        break;
      case Transform::Kind::first:
        text = firstCharacters(text, each.characters);
        break;
    }
  }
  return text;
}

std::string firstHalf(std::string_view text) {
  return firstCharacters(text, characterCount(text) / 2);
}

std::string bullets(std::string_view text) {
  std::string hidden;
  for (std::size_t i = characterCount(text); i > 0; --i) hidden += bullet;
  return hidden;
}

std::vector<std::string> filledLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (end > 0) lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

}  // namespace simulator
