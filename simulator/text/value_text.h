#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "simulator/text/words.h"
#include "simulator/world/members.h"
#include "simulator/world/world.h"

/// Values of a Mac's state as words of a line: how each type is written, read back and compared. A
/// list, a set, a map or a structure stands in parentheses; of a structure the members stand there
/// that are not as in another one.
namespace simulator {

template <class Value>
struct ValueText;

/// Writes the value behind what there is, led by a blank.
template <class Value>
void writeValue(std::string& text, const Value& value) {
  ValueText<Value>::write(text, value);
}

/// Reads it back. Throws WorldError.
template <class Value>
void readValue(Words& words, Value& value) {
  ValueText<Value>::read(words, value);
}

template <class Value>
bool isSame(const Value& one, const Value& other) {
  return ValueText<Value>::isSame(one, other);
}

/// What is not read into what there is already begins so.
template <class Value>
Value emptyValue() {
  if constexpr (std::is_same_v<Value, Random>) {
    return Random(0);
  } else {
    return Value();
  }
}

namespace value_text {

inline constexpr const char* nowWord = "now";

void writeWord(std::string& text, const std::string& word);
std::string joined(const std::vector<std::string>& texts);
std::string decimal(double number);
void expectOpening(Words& words);
std::uint64_t readUnsigned(Words& words, std::uint64_t most);

/// Integers, with N..M for those that follow each other; `none` for none.
std::string runsOf(const std::vector<std::int64_t>& numbers);
std::vector<std::int64_t> readRuns(Words& words, std::int64_t least, std::int64_t most);

/// Whether the member is a time, by its word.
bool isTime(const std::string& word);
void writeTime(std::string& text, Microseconds time);
Microseconds readTime(Words& words);

/// The names of an enumeration's values, from 0; empty for one that is written as numbers.
template <class Enumeration>
struct Names {
  static constexpr std::size_t count = 0;
};

#define SIMULATOR_NAMES(Enumeration, ...)                              \
  template <>                                                          \
  struct Names<Enumeration> {                                          \
    static constexpr std::string_view all[] = {__VA_ARGS__};           \
    static constexpr std::size_t count = sizeof(all) / sizeof(all[0]); \
  }

SIMULATOR_NAMES(Presence, "always", "while-hovered", "while-open", "while-held");
SIMULATOR_NAMES(Placement, "above", "below", "at");
SIMULATOR_NAMES(Transform::Kind, "upper", "lower", "trim", "one-line", "first");
SIMULATOR_NAMES(Habits::Writes, "taken", "halved", "ignored");
SIMULATOR_NAMES(Habits::Scrolling, "none", "whole", "lazy");
SIMULATOR_NAMES(Habits::Children, "steady", "grow", "grow-deeper", "shrink");
SIMULATOR_NAMES(ApplicationKind, "appkit", "chromium");
SIMULATOR_NAMES(workspace::ActivationPolicy, "regular", "accessory", "prohibited");
SIMULATOR_NAMES(PasteboardReads, "free", "refused", "hanging");
SIMULATOR_NAMES(ClosedWindowSharing, "goes-on", "inactive", "stopped");
SIMULATOR_NAMES(KeyboardLayout, "us", "german", "french", "japanese");

#undef SIMULATOR_NAMES

/// Reads what stands in parentheses, by `readOne`, up to the closing one.
template <class ReadOne>
void readList(Words& words, ReadOne readOne) {
  expectOpening(words);
  while (!words.take(")")) {
    if (words.atEnd()) words.fail("a ')' is missing");
    readOne();
  }
}

template <class List>
bool areSame(const List& one, const List& other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](const auto& a, const auto& b) { return isSame(a, b); });
}

}  // namespace value_text

template <>
struct ValueText<bool> {
  static void write(std::string& text, bool value);
  static void read(Words& words, bool& value);
  static bool isSame(bool one, bool other) { return one == other; }
};

template <class Value>
requires(std::integral<Value> && !std::same_as<Value, bool>) struct ValueText<Value> {
  static void write(std::string& text, Value value) {
    value_text::writeWord(text, std::to_string(value));
  }
  static void read(Words& words, Value& value) {
    using Limits = std::numeric_limits<Value>;
    if constexpr (std::is_unsigned_v<Value>) {
      value = static_cast<Value>(value_text::readUnsigned(words, Limits::max()));
    } else {
      value = static_cast<Value>(
          words.integer(value_text::nowWord, "an integer", Limits::min(), Limits::max()));
    }
  }
  static bool isSame(Value one, Value other) { return one == other; }
};

template <class Value>
requires std::is_enum_v<Value>
struct ValueText<Value> {
  using Number = std::underlying_type_t<Value>;
  using Names = value_text::Names<Value>;

  static void write(std::string& text, Value value) {
    const auto number = static_cast<Number>(value);
    if constexpr (Names::count == 0) {
      writeValue(text, number);
    } else {
      value_text::writeWord(text, std::string(Names::all[static_cast<std::size_t>(number)]));
    }
  }
  static void read(Words& words, Value& value) {
    if constexpr (Names::count == 0) {
      Number number{};
      readValue(words, number);
      value = static_cast<Value>(number);
    } else {
      const Phrases names(std::begin(Names::all), std::end(Names::all));
      if (words.atEnd()) words.failNeeding(value_text::nowWord, oneOf(names).c_str());
      value = static_cast<Value>(takePhrase(words, names));
    }
  }
  static bool isSame(Value one, Value other) { return one == other; }
};

/// Types that are a word or two: a source has them.
#define SIMULATOR_WORD_VALUE(Value)                           \
  template <>                                                 \
  struct ValueText<Value> {                                   \
    static void write(std::string& text, const Value& value); \
    static void read(Words& words, Value& value);             \
    static bool isSame(const Value& one, const Value& other); \
  }

SIMULATOR_WORD_VALUE(double);
SIMULATOR_WORD_VALUE(std::string);
SIMULATOR_WORD_VALUE(Point);
SIMULATOR_WORD_VALUE(Size);
SIMULATOR_WORD_VALUE(Rect);
SIMULATOR_WORD_VALUE(ax::Range);
SIMULATOR_WORD_VALUE(Random);
SIMULATOR_WORD_VALUE(AttributeValue);
SIMULATOR_WORD_VALUE(Reaction);

#undef SIMULATOR_WORD_VALUE

template <class Value>
struct ValueText<std::optional<Value>> {
  static void write(std::string& text, const std::optional<Value>& value) {
    if (value) {
      writeValue(text, *value);
    } else {
      value_text::writeWord(text, "none");
    }
  }
  static void read(Words& words, std::optional<Value>& value) {
    value.reset();
    if (words.take("none")) return;
    Value read = emptyValue<Value>();
    readValue(words, read);
    value = std::move(read);
  }
  static bool isSame(const std::optional<Value>& one, const std::optional<Value>& other) {
    return one.has_value() == other.has_value() && (!one || simulator::isSame(*one, *other));
  }
};

/// Of a list or a set. Integers are a single word.
template <class List>
struct ListText {
  using Value = typename List::value_type;

  static void write(std::string& text, const List& list) {
    if constexpr (std::integral<Value>) {
      value_text::writeWord(text, value_text::runsOf({list.begin(), list.end()}));
    } else {
      text += " (";
      for (const Value& each : list) writeValue(text, each);
      text += " )";
    }
  }
  static void read(Words& words, List& list) {
    list.clear();
    if constexpr (std::integral<Value>) {
      using Limits = std::numeric_limits<Value>;
      for (const std::int64_t each : value_text::readRuns(words, Limits::min(), Limits::max())) {
        list.insert(list.end(), static_cast<Value>(each));
      }
    } else {
      value_text::readList(words, [&] {
        Value value = emptyValue<Value>();
        readValue(words, value);
        list.insert(list.end(), std::move(value));
      });
    }
  }
  static bool isSame(const List& one, const List& other) { return value_text::areSame(one, other); }
};

template <class Value>
struct ValueText<std::vector<Value>> : ListText<std::vector<Value>> {};
template <class Value>
struct ValueText<std::set<Value>> : ListText<std::set<Value>> {};

template <class Key, class Value>
struct ValueText<std::map<Key, Value>> {
  using Map = std::map<Key, Value>;

  static void write(std::string& text, const Map& map) {
    text += " (";
    for (const auto& [key, value] : map) {
      writeValue(text, key);
      writeValue(text, value);
    }
    text += " )";
  }
  static void read(Words& words, Map& map) {
    map.clear();
    value_text::readList(words, [&] {
      Key key{};
      readValue(words, key);
      readValue(words, map[key]);
    });
  }
  static bool isSame(const Map& one, const Map& other) {
    return one.size() == other.size() &&
           std::equal(one.begin(), one.end(), other.begin(), [](const auto& a, const auto& b) {
             return a.first == b.first && simulator::isSame(a.second, b.second);
           });
  }
};

/// What is written in lines of its own, or goes with its process, is no member of a `now` line.
template <class Value>
inline constexpr bool isElsewhere =
    std::is_same_v<Value, std::vector<Display>> ||
    std::is_same_v<Value, std::vector<Application>> || std::is_same_v<Value, std::vector<Window>> ||
    std::is_same_v<Value, std::vector<Element>> ||
    std::is_same_v<Value, std::map<ElementId, Habits>> ||
    std::is_same_v<Value, std::vector<Scripted>> || std::is_same_v<Value, Adder*> ||
    std::is_same_v<Value, std::shared_ptr<const Definitions>> ||
    std::is_same_v<Value, std::vector<Cover>> || std::is_same_v<Value, std::vector<Sharing>>;

/// A member, by its word.
template <class Value>
void writeMember(std::string& text, const std::string& word, const Value& value) {
  value_text::writeWord(text, word);
  if constexpr (std::is_same_v<Value, Microseconds>) {
    if (value_text::isTime(word)) return value_text::writeTime(text, value);
  }
  if constexpr (std::is_same_v<Value, std::optional<Microseconds>>) {
    if (value && value_text::isTime(word)) return value_text::writeTime(text, *value);
  }
  writeValue(text, value);
}

template <class Value>
void readMemberValue(Words& words, const std::string& word, Value& value) {
  if constexpr (std::is_same_v<Value, Microseconds> ||
                std::is_same_v<Value, std::optional<Microseconds>>) {
    if (value_text::isTime(word) && !words.nextIs("none")) {
      value = value_text::readTime(words);
      return;
    }
  }
  readValue(words, value);
}

/// Reads the member of the structure that `word` names. Throws when it has none.
template <Structure Whole>
void readMember(Words& words, const std::string& word, Whole& whole) {
  bool isKnown = false;
  forEachMember(
      [&](const std::string& name, auto& member) {
        using Value = std::remove_cvref_t<decltype(member)>;
        if constexpr (!isElsewhere<Value>) {
          if (isKnown || name != word) return;
          isKnown = true;
          readMemberValue(words, word, member);
        }
      },
      whole);
  if (!isKnown) words.failUnknownName("unknown word '" + word + "'", word, memberWords<Whole>());
}

/// The members that are not as in `base`, each with its word, led by a blank.
template <Structure Whole>
std::vector<std::string> membersApart(const Whole& whole, const Whole& base) {
  std::vector<std::string> texts;
  forEachMember(
      [&](const std::string& word, const auto& member, const auto& other) {
        using Value = std::remove_cvref_t<decltype(member)>;
        if constexpr (!isElsewhere<Value>) {
          if (isSame(member, other)) return;
          // A structure in a structure: what differs of it alone.
          if constexpr (Structure<Value> && !std::is_same_v<Value, Reaction>) {
            texts.push_back(" " + word + " (" + value_text::joined(membersApart(member, other)) +
                            " )");
          } else {
            writeMember(texts.emplace_back(), word, member);
          }
        }
      },
      whole, base);
  return texts;
}

/// The same, one behind the other.
template <Structure Whole>
std::string differingMembers(const Whole& whole, const Whole& base) {
  return value_text::joined(membersApart(whole, base));
}

template <Structure Whole>
struct ValueText<Whole> {
  static void write(std::string& text, const Whole& whole) {
    text += " (" + differingMembers(whole, Whole()) + " )";
  }
  static void read(Words& words, Whole& whole) {
    value_text::readList(
        words, [&] { readMember(words, words.word(value_text::nowWord, "what is so"), whole); });
  }
  static bool isSame(const Whole& one, const Whole& other) {
    bool same = true;
    forEachMember(
        [&](const std::string& /*word*/, const auto& a, const auto& b) {
          if constexpr (!isElsewhere<std::remove_cvref_t<decltype(a)>>) {
            same = same && simulator::isSame(a, b);
          }
        },
        one, other);
    return same;
  }
};

}  // namespace simulator
