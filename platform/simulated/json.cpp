#include "platform/json.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace json {

namespace {

/// Whole doubles up to here are exact integers.
constexpr double exactIntegerMax = 9007199254740992.0;

nlohmann::json convert(const driver::Value& value);

struct Converter {
  nlohmann::json operator()(std::monostate /*null*/) const { return nullptr; }
  nlohmann::json operator()(bool value) const { return value; }
  nlohmann::json operator()(std::int64_t value) const { return value; }
  nlohmann::json operator()(double value) const {
    if (!std::isfinite(value)) std::abort();
    if (std::trunc(value) == value && std::fabs(value) <= exactIntegerMax) {
      return static_cast<std::int64_t>(value);
    }
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

}  // namespace json
