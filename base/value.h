#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace driver {

/// A JSON value. Texts are UTF-8; object keys are ordered by their bytes.
class Value {
 public:
  using List = std::vector<Value>;
  using Object = std::map<std::string, Value>;

  Value() = default;                                          // null
  Value(bool value) : data_(value) {}                         // NOLINT(google-explicit-constructor)
  Value(std::int64_t value) : data_(value) {}                 // NOLINT(google-explicit-constructor)
  Value(std::int32_t value) : data_(std::int64_t{value}) {}   // NOLINT(google-explicit-constructor)
  Value(std::uint32_t value) : data_(std::int64_t{value}) {}  // NOLINT(google-explicit-constructor)
  Value(double value) : data_(value) {}                       // NOLINT(google-explicit-constructor)
  Value(const char* value) : data_(std::string(value)) {}     // NOLINT(google-explicit-constructor)
  Value(std::string value) : data_(std::move(value)) {}       // NOLINT(google-explicit-constructor)
  Value(List value) : data_(std::move(value)) {}              // NOLINT(google-explicit-constructor)
  Value(Object value) : data_(std::move(value)) {}            // NOLINT(google-explicit-constructor)

  /// The value as the type asked for, or null when it is of another type. Borrowed.
  template <class T>
  const T* get() const {
    return std::get_if<T>(&data_);
  }

  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), data_);
  }

  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<std::monostate, bool, std::int64_t, double, std::string, List, Object> data_;
};

/// The texts in a list of nothing else; none for any other value.
std::optional<std::vector<std::string>> textsIn(const Value& value);

}  // namespace driver
