#include "tests/oracle/json_line.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace oracle {

namespace {

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\' || c == '/') {
      result += std::string("\\") + c;
    } else if (c == '\n') {
      result += "\\n";
    } else if (c == '\r') {
      result += "\\r";
    } else if (c == '\t') {
      result += "\\t";
    } else if (c == '\b') {
      result += "\\b";
    } else if (c == '\f') {
      result += "\\f";
    } else if (static_cast<unsigned char>(c) < 0x20) {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
      result += escape.data();
    } else {
      result += c;
    }
  }
  return result + "\"";
}

std::string textOf(const Json& value) {
  if (value.is_string()) return quoted(value.get<std::string>());
  if (value.is_number_float()) return numberText(value.get<double>());
  std::string result;
  if (value.is_array()) {
    for (const Json& item : value) result += (result.empty() ? "" : ",") + textOf(item);
    return "[" + result + "]";
  }
  if (value.is_object()) {
    for (const auto& [key, item] : value.items()) {  // a map by bytes
      result += (result.empty() ? "" : ",") + quoted(key) + ":" + textOf(item);
    }
    return "{" + result + "}";
  }
  return value.dump();
}

}  // namespace

std::string jsonLine(const Json& reply) { return textOf(reply) + "\n"; }

std::string numberText(double number) {
  if (number == 0) return "0";
  std::array<char, 64> text{};
  for (int digits = 1; digits <= 17; ++digits) {
    std::snprintf(text.data(), text.size(), "%.*g", digits, number);
    if (std::strtod(text.data(), nullptr) == number) break;
  }
  // A whole number keeps its digits, however few would do.
  if (number > -1e15 && number < 1e15 &&
      number == static_cast<double>(static_cast<long long>(number))) {
    return std::to_string(static_cast<long long>(number));
  }
  return text.data();
}

}  // namespace oracle
