#include "platform/json.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <string>

#include "base/numbers.h"
#include "base/utf8.h"
#include "platform/types.h"

namespace json {

namespace {

nlohmann::json convert(const driver::Value& value);

struct Converter {
  nlohmann::json operator()(std::monostate /*null*/) const { return nullptr; }
  nlohmann::json operator()(bool value) const { return value; }
  nlohmann::json operator()(std::int64_t value) const { return value; }
  nlohmann::json operator()(double value) const {
    if (!std::isfinite(value)) std::abort();
    if (const auto integer = driver::exactInteger(value)) return *integer;
    return value;
  }
  nlohmann::json operator()(const std::string& value) const { return value; }
  nlohmann::json operator()(const driver::Value::List& values) const {
    auto list = nlohmann::json::array();
    for (const auto& value : values) list.push_back(convert(value));
    return list;
  }
  nlohmann::json operator()(const driver::Value::Object& values) const {
    auto object = nlohmann::json::object();
    for (const auto& [key, value] : values) object[key] = convert(value);
    return object;
  }
};

nlohmann::json convert(const driver::Value& value) { return value.visit(Converter{}); }

/// The longest description of an error, in bytes.
constexpr std::size_t descriptionMax = 250;

// The parser bounds no nesting; what is deeper than this is no text of ours.
constexpr std::size_t nestingMax = 500;

bool nestsTooDeep(std::string_view text) {
  std::size_t depth = 0;
  bool inText = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (inText && text[i] == '\\') {
      ++i;
    } else if (text[i] == '"') {
      inText = !inText;
    } else if (!inText && (text[i] == '[' || text[i] == '{')) {
      if (++depth > nestingMax) return true;
    } else if (!inText && (text[i] == ']' || text[i] == '}') && depth > 0) {
      --depth;
    }
  }
  return false;
}

driver::Value revert(const nlohmann::json& parsed) {
  if (parsed.is_boolean()) return parsed.get<bool>();
  if (parsed.is_number_unsigned() && parsed.get<std::uint64_t>() > INT64_MAX) {
    return parsed.get<double>();
  }
  if (parsed.is_number_integer()) return parsed.get<std::int64_t>();
  if (parsed.is_number()) return parsed.get<double>();
  if (parsed.is_string()) return parsed.get<std::string>();
  if (parsed.is_array()) {
    driver::Value::List list;
    for (const auto& item : parsed) list.push_back(revert(item));
    return list;
  }
  if (!parsed.is_object()) return {};
  driver::Value::Object object;
  for (const auto& [key, value] : parsed.items()) object.emplace(key, revert(value));
  return object;
}

}  // namespace

std::string write(const driver::Value& value) {
  const std::string plain = convert(value).dump();
  std::string escaped;
  escaped.reserve(plain.size());
  for (const char c : plain) {  // a slash stands only inside texts
    if (c == '/') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

driver::Value parseOrThrow(std::string_view text) {
  if (nestsTooDeep(text)) {
    throw platform::PlatformError("more than " + std::to_string(nestingMax) + " levels");
  }
  try {
    const auto parsed = nlohmann::json::parse(text);
    if (parsed.is_array() || parsed.is_object()) return revert(parsed);
  } catch (const nlohmann::json::exception& error) {
    // It quotes what it could not read, byte by byte and however long that is.
    throw platform::PlatformError(
        driver::repairedUtf8(std::string_view(error.what()).substr(0, descriptionMax)));
  }
  throw platform::PlatformError("neither an object nor a list");
}

std::optional<driver::Value> parse(std::string_view text) {
  if (nestsTooDeep(text)) return std::nullopt;
  const auto parsed = nlohmann::json::parse(text, nullptr, false);
  if (!parsed.is_array() && !parsed.is_object()) return std::nullopt;
  return revert(parsed);
}

}  // namespace json
