#pragma once

#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "platform/wire.h"

/// How the values of accessibility attributes travel. Both ends have opaque values, elements and
/// lists in a form of their own; all other values are the same at both, and here. Not part of the
/// Mac's executable.
namespace platform {

/// The kind of a value that is the same at both ends.
template <class T>
constexpr ValueKind kindOf() {
  if constexpr (std::is_same_v<T, std::string>) return ValueKind::text;
  if constexpr (std::is_same_v<T, bool>) return ValueKind::boolean;
  if constexpr (std::is_same_v<T, std::int64_t>) return ValueKind::integer;
  if constexpr (std::is_same_v<T, double>) return ValueKind::number;
  if constexpr (std::is_same_v<T, Point>) return ValueKind::point;
  if constexpr (std::is_same_v<T, Size>) return ValueKind::size;
  if constexpr (std::is_same_v<T, Rect>) return ValueKind::rect;
  if constexpr (std::is_same_v<T, ax::Range>) return ValueKind::range;
}

/// A value of this kind, with what is in it.
inline driver::Datum tagged(ValueKind kind, driver::Datum payload) {
  return driver::listOf(driver::pack(kind), std::move(payload));
}

template <class T>
driver::Datum packPlain(const T& value) {
  return tagged(kindOf<T>(), driver::pack(value));
}

/// A value that came, taken apart. Borrowed.
struct Tagged {
  explicit Tagged(const driver::Datum& datum)
      : parts(driver::datum_detail::as<driver::Datum::List>(datum)) {
    if (parts.size() != 2) throw driver::MalformedDatum();
    kind = driver::unpack<ValueKind>(parts[0]);
  }

  const driver::Datum& payload() const { return parts[1]; }

  const driver::Datum::List& parts;
  ValueKind kind = ValueKind::opaque;
};

/// The value when it is the same at both ends, as this end's type for any value; none for the
/// others. Throws MalformedDatum for what is no value.
template <class Value>
std::optional<Value> unpackPlain(const Tagged& parts) {
  using driver::unpack;
  switch (parts.kind) {
    case ValueKind::text:
      return Value{unpack<std::string>(parts.payload())};
    case ValueKind::boolean:
      return Value{unpack<bool>(parts.payload())};
    case ValueKind::integer:
      return Value{unpack<std::int64_t>(parts.payload())};
    case ValueKind::number:
      return Value{unpack<double>(parts.payload())};
    case ValueKind::point:
      return Value{unpack<Point>(parts.payload())};
    case ValueKind::size:
      return Value{unpack<Size>(parts.payload())};
    case ValueKind::rect:
      return Value{unpack<Rect>(parts.payload())};
    case ValueKind::range:
      return Value{unpack<ax::Range>(parts.payload())};
    case ValueKind::opaque:
    case ValueKind::element:
    case ValueKind::list:
      return std::nullopt;
  }
  throw driver::MalformedDatum();
}

}  // namespace platform
