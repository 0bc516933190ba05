#include "base/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace driver {

namespace {

bool isNumberStart(char c) {
  return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.' || c == 'i' || c == 'I' ||
         c == 'n' || c == 'N';
}

template <class Integer>
std::optional<Integer> parseInteger(std::string_view text) {
  // The library takes "-" alone.
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == '-') return std::nullopt;
  }
  // Wide enough for each of the types, so that one that is too narrow is no overflow.
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value < static_cast<std::int64_t>(std::numeric_limits<Integer>::min()) ||
      value > static_cast<std::int64_t>(std::numeric_limits<Integer>::max())) {
    return std::nullopt;
  }
  return static_cast<Integer>(value);
}

}  // namespace

std::optional<double> parseDouble(std::string_view text) {
  // strtod skips leading white space and reads "nan(…)"; neither is a number here.
  if (text.empty() || !isNumberStart(text.front()) || text.find('(') != text.npos) {
    return std::nullopt;
  }
  // And it needs an end: the library's newer function, which does not, reads no hexadecimal prefix.
  const std::string terminated(text);
  char* end = nullptr;
  const double value = std::strtod(terminated.c_str(), &end);
  if (end != terminated.c_str() + terminated.size()) return std::nullopt;
  return value;
}

std::optional<std::int32_t> parseInt32(std::string_view text) {
  return parseInteger<std::int32_t>(text);
}

std::optional<std::int64_t> parseInt64(std::string_view text) {
  return parseInteger<std::int64_t>(text);
}

std::optional<std::uint32_t> parseUint32(std::string_view text) {
  return parseInteger<std::uint32_t>(text);
}

std::optional<std::int64_t> exactInteger(double number) {
  constexpr double exactIntegerMax = 9007199254740992.0;
  const bool isExact = std::trunc(number) == number && std::fabs(number) <= exactIntegerMax;
  return isExact ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
}

std::string decimalText(double number) {
  // Left to itself, the library would write a hundred thousand as "1e+05".
  if (const auto integer = exactInteger(number)) return std::to_string(*integer);
  std::array<char, 32> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return std::string(digits.data(), end);
}

}  // namespace driver
