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

}  // namespace datum_detail

/// A value as a datum. Integers and enumerations travel as 64-bit integers.
template <class T>
Datum pack(const T& value) {
  if constexpr (std::is_same_v<T, Datum>) {
    return value;
  } else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, double>) {
    return Datum(value);
  } else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) {
    return Datum(static_cast<std::int64_t>(value));
  } else if constexpr (std::is_convertible_v<T, std::string_view>) {
    return Datum(std::string(std::string_view(value)));
  } else if constexpr (datum_detail::IsOptional<T>::value) {
    return value ? Datum(Datum::List{pack(*value)}) : Datum();
  } else if constexpr (datum_detail::IsVector<T>::value) {
    Datum::List list;
    list.reserve(value.size());
    for (const auto& item : value) list.push_back(pack(item));
    return Datum(std::move(list));
  } else {
    static_assert(Structure<T>);
    return std::apply(
        [&](auto... members) {
          Datum::List list;
          list.reserve(sizeof...(members));
          (list.push_back(pack(value.*members)), ...);
          return Datum(std::move(list));
        },
        Members<T>::members);
  }
}

/// The value in a datum. Throws MalformedDatum when it has another form.
template <class T>
T unpack(const Datum& datum) {
  using datum_detail::as;
  if constexpr (std::is_same_v<T, Datum>) {
    return datum;
  } else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, double> ||
                       std::is_same_v<T, std::string>) {
    return as<T>(datum);
  } else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) {
    return static_cast<T>(as<std::int64_t>(datum));
  } else if constexpr (datum_detail::IsOptional<T>::value) {
    if (datum.isNothing()) return std::nullopt;
    const auto& list = as<Datum::List>(datum);
    if (list.size() != 1) throw MalformedDatum();
    return unpack<typename T::value_type>(list[0]);
  } else if constexpr (datum_detail::IsVector<T>::value) {
    T items;
    const auto& list = as<Datum::List>(datum);
    items.reserve(list.size());
    for (const auto& item : list) items.push_back(unpack<typename T::value_type>(item));
    return items;
  } else {
    static_assert(Structure<T>);
    T value{};
    const auto& list = as<Datum::List>(datum);
    std::apply(
        [&](auto... members) {
          if (list.size() != sizeof...(members)) throw MalformedDatum();
          std::size_t next = 0;
          ((value.*members = unpack<std::remove_cvref_t<decltype(value.*members)>>(list[next++])),
           ...);
        },
        Members<T>::members);
    return value;
  }
}

}  // namespace driver
