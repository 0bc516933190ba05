#include "simulator/world/utf16_text.h"

namespace simulator {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }
bool isHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLow(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace

void appendCodePoint(std::string& text, char32_t point) {
  const auto tail = [&](unsigned shift) {
    text += static_cast<char>(0x80U | ((point >> shift) & 0x3FU));
  };
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += static_cast<char>(0xC0U | (point >> 6U));
    tail(0);
  } else if (point < 0x10000) {
    text += static_cast<char>(0xE0U | (point >> 12U));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0U | (point >> 18U));
    tail(12);
    tail(6);
    tail(0);
  }
}

std::string utf8Of(std::u16string_view units) {
  std::string text;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (isHigh(unit) && i + 1 < units.size() && isLow(units[i + 1])) {
      const auto high = static_cast<char32_t>(unit - 0xD800) << 10U;
      appendCodePoint(text, 0x10000U + high + static_cast<char32_t>(units[++i] - 0xDC00));
    } else {
      appendCodePoint(text, isSurrogate(unit) ? replacement : unit);
    }
  }
  return text;
}

std::u16string unitsOf(std::string_view bytes) {
  std::u16string units;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = static_cast<unsigned char>(bytes[i + 1]);
    units += static_cast<char16_t>(high << 8U | low);
  }
  return units;
}

}  // namespace simulator
