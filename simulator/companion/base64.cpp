#include "simulator/companion/base64.h"

#include <cstdint>

namespace companion {

std::string base64(std::string_view bytes) {
  constexpr std::string_view digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t j = i; j < i + 3; ++j) {
      group = group << 8U | (j < bytes.size() ? static_cast<std::uint8_t>(bytes[j]) : 0U);
    }
    for (std::size_t j = 0; j < 4; ++j) {
      const bool isFilled = i + j <= bytes.size();
      text += isFilled ? digits[group >> (18 - 6 * j) & 0x3FU] : '=';
    }
  }
  return text;
}

}  // namespace companion
