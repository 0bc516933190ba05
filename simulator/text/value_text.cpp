#include "simulator/text/value_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/numbers.h"
#include "simulator/text/attributes.h"
#include "simulator/text/call.h"
#include "simulator/text/naming.h"
#include "simulator/text/reaction_arguments.h"
#include "simulator/text/reactions.h"

namespace simulator {

namespace value_text {

namespace {

/// As far before the start as a time may be behind it.
constexpr Microseconds earliestMax = 1'000'000'000'000'000;

/// More than any list of a Mac's has.
constexpr std::size_t runLengthMax = 2'000'000;

constexpr std::array<std::string_view, 17> timeWords = {
    "due",         "at",         "since",     "delay",      "answer-delay",    "tree-delay",
    "paste-delay", "enabled-at", "last-post", "lock-delay", "present",         "asked",
    "last-news",   "least",      "most",      "before",     "screens-changed",
};

}  // namespace

void writeWord(std::string& text, const std::string& word) {
  text += ' ';
  text += word;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string text;
  for (const std::string& each : texts) text += each;
  return text;
}

std::string decimal(double number) {
  if (std::isnan(number)) return "nan";
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return {digits.data(), end};
}

void expectOpening(Words& words) { words.expect(nowWord, "("); }

std::uint64_t readUnsigned(Words& words, std::uint64_t most) {
  constexpr const char* what = "a number from 0";
  const std::string word = words.word(nowWord, what);
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  const bool isWhole = error == std::errc() && end == word.data() + word.size();
  if (!isWhole || number > most) words.failAtLast(std::string("expected ") + what);
  return number;
}

std::string runsOf(const std::vector<std::int64_t>& numbers) {
  std::string text;
  for (std::size_t i = 0; i < numbers.size();) {
    std::size_t end = i + 1;
    while (end < numbers.size() && numbers[end - 1] != std::numeric_limits<std::int64_t>::max() &&
           numbers[end] == numbers[end - 1] + 1) {
      ++end;
    }
    text += (text.empty() ? "" : ",") + std::to_string(numbers[i]);
    if (end > i + 1) text += ".." + std::to_string(numbers[end - 1]);
    i = end;
  }
  return text.empty() ? "none" : text;
}

std::vector<std::int64_t> readRuns(Words& words, std::int64_t least, std::int64_t most) {
  std::vector<std::int64_t> numbers;
  const std::string list = words.word(nowWord, "numbers such as 1,4..7, or none");
  if (list == "none") return numbers;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    const std::string_view run = std::string_view(list).substr(start, comma - start);
    const std::size_t dots = run.find("..");
    const auto first = driver::parseInt64(run.substr(0, dots));
    const auto last = dots == run.npos ? first : driver::parseInt64(run.substr(dots + 2));
    const bool isRun = first && last && *first >= least && *last <= most && *first <= *last;
    if (!isRun) words.failAtLast("expected numbers such as 1,4..7, or none");
    const auto length = static_cast<std::uint64_t>(*last) - static_cast<std::uint64_t>(*first);
    if (length >= runLengthMax - std::min(numbers.size(), runLengthMax)) {
      words.failAtLast("more than 2,000,000 numbers");
    }
    for (std::int64_t each = *first; each < *last; ++each) numbers.push_back(each);
    numbers.push_back(*last);
    start = comma + 1;
  }
  return numbers;
}

bool isTime(const std::string& word) {
  return std::find(timeWords.begin(), timeWords.end(), word) != timeWords.end();
}

void writeTime(std::string& text, Microseconds time) { writeWord(text, spanText({time, time})); }

Microseconds readTime(Words& words) {
  // A time before the start is none that a world can say otherwise.
  const Token* next = words.peek();
  const bool isNegative = next != nullptr && next->text.starts_with("-");
  if (!isNegative) return words.time(nowWord);
  const std::string word = words.word(nowWord, "a time");
  const auto time = word.ends_with("us")
                        ? driver::parseInt64(std::string_view(word).substr(0, word.size() - 2))
                        : std::nullopt;
  if (!time || *time < -earliestMax) words.failAtLast("expected a time such as -250us");
  return *time;
}

}  // namespace value_text

using value_text::nowWord;
using value_text::writeWord;

void ValueText<bool>::write(std::string& text, bool value) {
  writeWord(text, value ? "true" : "false");
}

void ValueText<bool>::read(Words& words, bool& value) {
  value = words.take("true");
  if (!value && !words.take("false")) words.failNeeding(nowWord, "true or false");
}

void ValueText<double>::write(std::string& text, const double& value) {
  writeWord(text, value_text::decimal(value));
}

void ValueText<double>::read(Words& words, double& value) {
  value = words.number(nowWord, "a number");
}

bool ValueText<double>::isSame(const double& one, const double& other) {
  return one == other || (std::isnan(one) && std::isnan(other));
}

void ValueText<std::string>::write(std::string& text, const std::string& value) {
  writeWord(text, inQuotes(value));
}

void ValueText<std::string>::read(Words& words, std::string& value) {
  value = words.text(nowWord, "a quoted text");
}

bool ValueText<std::string>::isSame(const std::string& one, const std::string& other) {
  return one == other;
}

void ValueText<Point>::write(std::string& text, const Point& value) {
  writeWord(text, value_text::decimal(value.x) + "," + value_text::decimal(value.y));
}

void ValueText<Point>::read(Words& words, Point& value) { value = words.point(nowWord); }

bool ValueText<Point>::isSame(const Point& one, const Point& other) {
  return simulator::isSame(one.x, other.x) && simulator::isSame(one.y, other.y);
}

void ValueText<Size>::write(std::string& text, const Size& value) {
  writeWord(text, value_text::decimal(value.width) + "x" + value_text::decimal(value.height));
}

void ValueText<Size>::read(Words& words, Size& value) { value = words.size(nowWord); }

bool ValueText<Size>::isSame(const Size& one, const Size& other) {
  return simulator::isSame(one.width, other.width) && simulator::isSame(one.height, other.height);
}

void ValueText<Rect>::write(std::string& text, const Rect& value) {
  writeValue(text, Point{value.x, value.y});
  text += "," + value_text::decimal(value.width) + "x" + value_text::decimal(value.height);
}

void ValueText<Rect>::read(Words& words, Rect& value) { value = words.rect(nowWord); }

bool ValueText<Rect>::isSame(const Rect& one, const Rect& other) {
  return simulator::isSame(Point{one.x, one.y}, Point{other.x, other.y}) &&
         simulator::isSame(Size{one.width, one.height}, Size{other.width, other.height});
}

void ValueText<ax::Range>::write(std::string& text, const ax::Range& value) {
  writeWord(text, std::to_string(value.location) + "+" + std::to_string(value.length));
}

void ValueText<ax::Range>::read(Words& words, ax::Range& value) { value = words.range(nowWord); }

bool ValueText<ax::Range>::isSame(const ax::Range& one, const ax::Range& other) {
  return one == other;
}

void ValueText<Random>::write(std::string& text, const Random& value) {
  writeValue(text, value.state());
}

void ValueText<Random>::read(Words& words, Random& value) {
  value = Random(value_text::readUnsigned(words, std::numeric_limits<std::uint64_t>::max()));
}

bool ValueText<Random>::isSame(const Random& one, const Random& other) {
  return one.state() == other.state();
}

namespace {

/// Writes an attribute's value with the word that says of what kind it is.
struct AttributeWriter {
  std::string& text;

  void operator()(const std::string& value) const { writeValue(text, value); }
  void operator()(bool value) const { writeValue(text, value); }
  void operator()(std::int64_t value) const { writeValue(text, value); }
  /// One that reads as an integer would be one.
  void operator()(double value) const {
    std::string number = value_text::decimal(value);
    if (driver::parseInt64(number)) number += ".0";
    writeWord(text, number);
  }
  void operator()(const Opaque& value) const { write("opaque", value.hash); }
  void operator()(const ElementLink& value) const { write("element", value.id); }
  void operator()(const std::vector<ElementId>& value) const { write("elements", value); }
  void operator()(const Point& value) const { write("point", value); }
  void operator()(const Size& value) const { write("size", value); }
  void operator()(const Rect& value) const { write("rect", value); }
  void operator()(const ax::Range& value) const { write("range", value); }

  template <class Value>
  void write(const char* word, const Value& value) const {
    writeWord(text, word);
    writeValue(text, value);
  }
};

template <class Value>
bool takeAttribute(Words& words, const char* word, AttributeValue& value) {
  if (!words.take(word)) return false;
  Value read{};
  readValue(words, read);
  value = std::move(read);
  return true;
}

}  // namespace

void ValueText<AttributeValue>::write(std::string& text, const AttributeValue& value) {
  std::visit(AttributeWriter{text}, value);
}

void ValueText<AttributeValue>::read(Words& words, AttributeValue& value) {
  if (words.take("opaque")) {
    value = Opaque{value_text::readUnsigned(words, std::numeric_limits<std::uint64_t>::max())};
  } else if (words.take("element")) {
    value = ElementLink{
        words.integer("element", "an element's id", 0, std::numeric_limits<std::int64_t>::max())};
  } else if (!takeAttribute<std::vector<ElementId>>(words, "elements", value) &&
             !takeAttribute<Point>(words, "point", value) &&
             !takeAttribute<Size>(words, "size", value) &&
             !takeAttribute<Rect>(words, "rect", value) &&
             !takeAttribute<ax::Range>(words, "range", value)) {
    value = readPlainValue(words, nowWord);
  }
}

bool ValueText<AttributeValue>::isSame(const AttributeValue& one, const AttributeValue& other) {
  if (one.index() != other.index()) return false;
  return std::visit(
      [&](const auto& value) {
        using Value = std::remove_cvref_t<decltype(value)>;
        const Value& second = std::get<Value>(other);
        if constexpr (std::is_same_v<Value, Opaque> || std::is_same_v<Value, ElementLink>) {
          return value == second;
        } else {
          return simulator::isSame(value, second);
        }
      },
      one);
}

void ValueText<Reaction>::write(std::string& text, const Reaction& value) {
  writeWord(text, inQuotes(reactionText(value)));
  if (value.heldArguments.empty()) return;
  writeMember(text, "held", value.heldArguments);
}

void ValueText<Reaction>::read(Words& words, Reaction& value) {
  const std::string text = words.text(nowWord, "a quoted reaction");
  const std::vector<Line> lines = scanLines(text);
  if (lines.size() != 1) words.failAtLast("expected a reaction");
  Words inner(lines.front());
  std::vector<Reaction> read = readReactions(inner, nowWord);
  if (read.size() != 1 || !inner.atEnd()) words.failAtLast("expected a single reaction");
  value = std::move(read.front());
  if (words.take("held")) readValue(words, value.heldArguments);
}

namespace {

bool isSameCall(const Reaction& one, const Reaction& other) {
  if ((one.addition == nullptr) != (other.addition == nullptr)) return false;
  if (one.addition == nullptr) return true;
  const Call& a = one.addition->call;
  const Call& b = other.addition->call;
  return a.name == b.name && a.held == b.held &&
         std::equal(a.arguments.begin(), a.arguments.end(), b.arguments.begin(), b.arguments.end(),
                    [](const Token& first, const Token& second) {
                      return first.kind == second.kind && first.text == second.text;
                    });
}

}  // namespace

/// How the other application is named is of no matter once it is known.
bool ValueText<Reaction>::isSame(const Reaction& one, const Reaction& other) {
  bool same = isSameCall(one, other) && (one.elsewherePid != 0 || one.elsewhere == other.elsewhere);
  forEachMember(
      [&](const std::string& word, const auto& a, const auto& b) {
        using Value = std::remove_cvref_t<decltype(a)>;
        if constexpr (std::is_same_v<Value, ReactionEffect*>) {
          same = same && a == b;
        } else if constexpr (!std::is_same_v<Value, std::shared_ptr<const Addition>>) {
          same = same && (word == "elsewhere" || simulator::isSame(a, b));
        }
      },
      one, other);
  return same;
}

}  // namespace simulator
