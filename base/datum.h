#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace driver {

/// A value as it travels between two processes: nothing, a Boolean, a 64-bit integer, a double, a
/// text or bytes, or a list. A structure travels as the list of its members.
class Datum {
 public:
  using List = std::vector<Datum>;

  Datum() = default;
  template <class T>
  explicit Datum(T value) : data(std::move(value)) {}

  bool isNothing() const { return std::holds_alternative<std::monostate>(data); }

  friend bool operator==(const Datum&, const Datum&) = default;

  std::variant<std::monostate, bool, std::int64_t, double, std::string, List> data;
};

/// Thrown where a datum, or its bytes, do not have the form expected.
class MalformedDatum : public std::runtime_error {
 public:
  MalformedDatum() : std::runtime_error("malformed datum") {}
};

/// Appends the datum's bytes. Little-endian, each value led by a byte for its kind.
void encode(const Datum& datum, std::string& bytes);

/// Reads one datum off the front of `bytes`. Throws MalformedDatum when they end too soon, or nest
/// deeper than 64 lists.
Datum decode(std::string_view& bytes);

/// The members of a structure that travels, in order. Specialised for each such structure as
/// `static constexpr auto members = std::tuple{&T::a, &T::b};`
template <class T>
struct Members;

template <class T>
concept Structure = requires {
  Members<T>::members;
};

/// What travels in a form of its own, in place of the one that its type would have. Specialised for
/// each such type with `static Datum pack(const T& value)` and `static T unpack(const Datum&
/// datum)`.
template <class T>
struct OwnForm;

template <class T>
concept HasOwnForm = requires(const Datum& datum) {
  OwnForm<T>::unpack(datum);
};

namespace datum_detail {

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};
template <class T>
struct IsVector : std::false_type {};
template <class T>
struct IsVector<std::vector<T>> : std::true_type {};

template <class T>
const T& as(const Datum& datum) {
  if (const T* value = std::get_if<T>(&datum.data)) return *value;
  throw MalformedDatum();
}

template <class T>
T&& as(Datum&& datum) {
  if (T* value = std::get_if<T>(&datum.data)) return std::move(*value);
  throw MalformedDatum();
}

/// The item of a list: given away when the list is.
template <class List>
decltype(auto) item(List&& list, std::size_t index) {
  if constexpr (std::is_lvalue_reference_v<List>) {
    return (list[index]);
  } else {
    return std::move(list[index]);
  }
}

}  // namespace datum_detail

/// A list of these. An initialiser would copy each.
template <class... Items>
Datum listOf(Items&&... items) {
  Datum::List list;
  list.reserve(sizeof...(items));
  (list.push_back(std::forward<Items>(items)), ...);
  return Datum(std::move(list));
}

/// A value as a datum. Integers and enumerations travel as 64-bit integers. What is given away is
/// not copied.
template <class T>
Datum pack(T&& value) {
  using Value = std::remove_cvref_t<T>;
  if constexpr (std::is_same_v<Value, Datum>) {
    return std::forward<T>(value);
  } else if constexpr (HasOwnForm<Value>) {
    return OwnForm<Value>::pack(value);
  } else if constexpr (std::is_same_v<Value, bool> || std::is_same_v<Value, double>) {
    return Datum(Value(value));
  } else if constexpr (std::is_integral_v<Value> || std::is_enum_v<Value>) {
    return Datum(static_cast<std::int64_t>(value));
  } else if constexpr (std::is_same_v<Value, std::string>) {
    return Datum(std::string(std::forward<T>(value)));
  } else if constexpr (std::is_convertible_v<Value, std::string_view>) {
    return Datum(std::string(std::string_view(value)));
  } else if constexpr (datum_detail::IsOptional<Value>::value) {
    return value ? listOf(pack(*std::forward<T>(value))) : Datum();
  } else if constexpr (datum_detail::IsVector<Value>::value) {
    Datum::List list;
    list.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
      list.push_back(pack(datum_detail::item(std::forward<T>(value), i)));
    }
    return Datum(std::move(list));
  } else {
    static_assert(Structure<Value>);
    return std::apply(
        [&](auto... members) { return listOf(pack(std::forward<T>(value).*members)...); },
        Members<Value>::members);
  }
}

/// The value in a datum. Throws MalformedDatum when it has another form. What is in a datum that is
/// given away is not copied.
template <class T, class From>
T unpack(From&& datum) {
  static_assert(std::is_same_v<std::remove_cvref_t<From>, Datum>);
  using datum_detail::as;
  using datum_detail::item;
  if constexpr (std::is_same_v<T, Datum>) {
    return std::forward<From>(datum);
  } else if constexpr (HasOwnForm<T>) {
    return OwnForm<T>::unpack(datum);
  } else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, double> ||
                       std::is_same_v<T, std::string>) {
    return as<T>(std::forward<From>(datum));
  } else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) {
    return static_cast<T>(as<std::int64_t>(datum));
  } else if constexpr (datum_detail::IsOptional<T>::value) {
    if (datum.isNothing()) return std::nullopt;
    auto&& list = as<Datum::List>(std::forward<From>(datum));
    if (list.size() != 1) throw MalformedDatum();
    return unpack<typename T::value_type>(item(std::forward<decltype(list)>(list), 0));
  } else if constexpr (datum_detail::IsVector<T>::value) {
    T items;
    auto&& list = as<Datum::List>(std::forward<From>(datum));
    items.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
      items.push_back(unpack<typename T::value_type>(item(std::forward<decltype(list)>(list), i)));
    }
    return items;
  } else {
    static_assert(Structure<T>);
    T value{};
    auto&& list = as<Datum::List>(std::forward<From>(datum));
    std::apply(
        [&](auto... members) {
          if (list.size() != sizeof...(members)) throw MalformedDatum();
          std::size_t next = 0;
          ((value.*members = unpack<std::remove_cvref_t<decltype(value.*members)>>(
                item(std::forward<decltype(list)>(list), next++))),
           ...);
        },
        Members<T>::members);
    return value;
  }
}

}  // namespace driver
