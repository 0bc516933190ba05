#include "simulator/mac/datum_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <variant>

#include "base/utf8.h"

namespace simulator {

namespace {

constexpr std::size_t textBytesMax = 120;
constexpr std::size_t hexBytesMax = 256;  // an event record is whole
constexpr std::string_view ellipsis = "…";

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

struct Texter {
  std::string operator()(std::monostate /*nothing*/) const { return "-"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.17g", value);
    return text.data();
  }
  std::string operator()(const std::string& value) const {
    if (!isReadable(value)) return "<" + hexOf(value) + ">";
    std::string text = beginningOf(value, textBytesMax);
    std::replace_if(text.begin(), text.end(), isControl, '.');
    return "\"" + text + "\"";
  }
  std::string operator()(const driver::Datum::List& values) const {
    std::string text = "[";
    for (const auto& value : values) text += (text.size() > 1 ? " " : "") + datumText(value);
    return text + "]";
  }
};

}  // namespace

bool isReadable(std::string_view bytes) {
  const bool hasOthers = std::any_of(bytes.begin(), bytes.end(), [](char c) {
    return isControl(c) && c != '\t' && c != '\n' && c != '\r';
  });
  return !hasOthers && driver::isUtf8(bytes);
}

std::string beginningOf(std::string_view text, std::size_t bytesMax) {
  if (text.size() <= bytesMax) return std::string(text);
  std::size_t end = bytesMax;
  while (end > 0 && isContinuation(text[end])) --end;
  return std::string(text.substr(0, end)) + std::string(ellipsis);
}

std::string hexOf(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes.substr(0, hexBytesMax)) {
    const auto byte = static_cast<unsigned char>(c);
    text += {digits[byte >> 4U], digits[byte & 0xFU]};
  }
  return bytes.size() > hexBytesMax ? text + std::string(ellipsis) : text;
}

std::string printable(std::string_view bytes) {
  std::string text;
  for (const char c : driver::repairedUtf8(bytes)) {
    if (c == '\n') {
      text += "\\n";
    } else if (c == '\r') {
      text += "\\r";
    } else if (c == '\t') {
      text += "\\t";
    } else if (isControl(c)) {
      text += "\\x" + hexOf({&c, 1});
    } else {
      text += c;
    }
  }
  return text;
}

std::string shellWord(const std::string& word) {
  constexpr std::string_view plain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-./:,+@%=";
  if (!word.empty() && word.find_first_not_of(plain) == word.npos) return word;
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string datumText(const driver::Datum& datum) { return std::visit(Texter{}, datum.data); }

}  // namespace simulator
