#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// What tests compare, kept so that the expected values in their sources can be rewritten. Nothing
/// is kept, and no value described, unless the environment variable UPDATE_EXPECT is set.
namespace expectations {

/// Whether comparisons are kept.
bool wanted();

/// A value in JSON from which it can be had back: a string as an object with its bytes in
/// hexadecimal digits, an absent value as an empty object, lists and pairs as arrays. Null stands
/// for what has no such form.
std::string textJson(std::string_view bytes);
std::string json(bool value);

template <class T>
std::string json(const T& value);

/// Lists; not what is a list of its own kind, as a path.
template <class T>
concept List =
    std::ranges::input_range<const T> && !std::is_same_v<std::ranges::range_value_t<const T>, T>;

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;
template <class T>
inline constexpr bool isPair = false;
template <class A, class B>
inline constexpr bool isPair<std::pair<A, B>> = true;

template <List T>
std::string listJson(const T& list) {
  std::string items;
  for (auto&& item : list) {
    items += items.empty() ? "" : ",";
    items += json(static_cast<const std::ranges::range_value_t<const T>&>(item));
  }
  return "[" + items + "]";
}

template <class T>
std::string json(const T& value) {
  if constexpr (std::is_pointer_v<T>) {
    if constexpr (std::is_convertible_v<T, std::string_view>) {
      if (value != nullptr) return textJson(value);
    }
    return "null";
  } else if constexpr (std::is_array_v<T> && std::is_convertible_v<T, std::string_view>) {
    return textJson(value);
  } else if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, std::string_view>) {
    return textJson(value);
  } else if constexpr (std::integral<T>) {
    return std::to_string(value);
  } else if constexpr (std::is_same_v<T, std::nullopt_t>) {
    return "{}";
  } else if constexpr (isOptional<T>) {
    return value ? json(*value) : "{}";
  } else if constexpr (isPair<T>) {
    return "[" + json(value.first) + "," + json(value.second) + "]";
  } else if constexpr (List<T>) {
    return listJson(value);
  } else {
    return "null";
  }
}

/// One comparison, as it stands in a source.
struct Place {
  const char* file;
  int line;
  const char* actual;
  const char* expected;
};

/// Keeps a comparison that was made in the running test.
void keep(const Place& place, bool holds, std::string actual, std::string expected);

/// Compares as GoogleTest does, and keeps what it has compared.
struct Equality {
  const char* file;
  int line;

  template <class Actual, class Expected>
  testing::AssertionResult operator()(const char* actualText, const char* expectedText,
                                      const Actual& actual, const Expected& expected) const {
    testing::AssertionResult result =
        testing::internal::EqHelper::Compare(actualText, expectedText, actual, expected);
    if (wanted()) {
      keep({file, line, actualText, expectedText}, result, json(actual), json(expected));
    }
    return result;
  }
};

}  // namespace expectations
