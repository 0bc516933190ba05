#include "simulator/text/words.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <utility>

#include "base/numbers.h"
#include "base/utf8.h"
#include "simulator/text/error.h"
#include "simulator/text/nearest.h"

namespace simulator {

namespace {

constexpr double mostMicroseconds = 1e15;

std::string shown(const Token& token) {
  return token.kind == Token::Kind::text ? '"' + token.text + '"' : "'" + token.text + "'";
}

/// The words of "at, size, value" or "fault, run or beside"; an entry of several words is none.
std::vector<std::string> listed(std::string_view list) {
  std::vector<std::string> entries;
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(", "), list.size());
    const std::size_t either = std::min(list.find(" or "), list.size());
    const std::string_view entry = list.substr(0, std::min(comma, either));
    if (entry.find(' ') == entry.npos) entries.emplace_back(entry);
    const std::size_t gap = comma < either ? 2 : 4;
    list.remove_prefix(std::min(entry.size() + gap, list.size()));
  }
  return entries;
}

std::optional<std::pair<std::string_view, std::string_view>> split(std::string_view text,
                                                                   std::size_t at) {
  if (at == text.npos) return std::nullopt;
  return std::pair{text.substr(0, at), text.substr(at + 1)};
}

std::optional<std::pair<double, double>> numbers(std::string_view text, char between) {
  const auto parts = split(text, text.find(between));
  if (!parts) return std::nullopt;
  const auto first = driver::parseDouble(parts->first);
  const auto second = driver::parseDouble(parts->second);
  if (!first || !second) return std::nullopt;
  return std::pair{*first, *second};
}

std::optional<Rect> rectOf(std::string_view text) {
  const auto parts = split(text, text.rfind(','));
  if (!parts) return std::nullopt;
  const auto origin = numbers(parts->first, ',');
  const auto extent = numbers(parts->second, 'x');
  if (!origin || !extent) return std::nullopt;
  return Rect{origin->first, origin->second, extent->first, extent->second};
}

std::optional<ax::Range> rangeOf(std::string_view text) {
  // From the second character on: the first may be a sign.
  const auto parts = split(text, text.find('+', 1));
  if (!parts) return std::nullopt;
  const auto location = driver::parseInt64(parts->first);
  const auto length = driver::parseInt64(parts->second);
  if (!location || !length) return std::nullopt;
  return ax::Range{*location, *length};
}

std::optional<Microseconds> timeOf(std::string_view text) {
  constexpr std::pair<std::string_view, double> units[] = {{"us", 1}, {"ms", 1e3}, {"s", 1e6}};
  for (const auto& [unit, factor] : units) {
    if (text.size() <= unit.size() || text.substr(text.size() - unit.size()) != unit) continue;
    const auto count = driver::parseDouble(text.substr(0, text.size() - unit.size()));
    if (!count) continue;
    const double microseconds = *count * factor;
    if (!(microseconds >= 0 && microseconds <= mostMicroseconds)) return std::nullopt;
    return std::llround(microseconds);
  }
  return std::nullopt;
}

std::optional<Span> spanOf(std::string_view text) {
  const std::size_t dots = text.find("..");
  const auto least = timeOf(text.substr(0, dots));
  const auto most = dots == text.npos ? least : timeOf(text.substr(dots + 2));
  if (!least || !most || *most < *least) return std::nullopt;
  return Span{*least, *most};
}

/// How many bytes the first character takes; 0 for a byte that is of none.
std::size_t lengthOfCharacter(std::string_view text) {
  constexpr std::size_t longest = 4;
  for (std::size_t length = 1; length <= std::min(longest, text.size()); ++length) {
    if (driver::isUtf8(text.substr(0, length))) return length;
  }
  return 0;
}

/// A single byte as it stands in quotation marks.
std::string writtenByte(char c) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  constexpr unsigned char firstPrintable = 0x20;
  constexpr unsigned char lastPrintable = 0x7E;
  const auto byte = static_cast<unsigned char>(c);
  if (c == '\n') return "\\n";
  if (c == '\t') return "\\t";
  if (c == '"' || c == '\\') return {'\\', c};
  if (byte >= firstPrintable && byte <= lastPrintable) return {c};
  return {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
}

/// What is still to be read of a phrase, and its place among the phrases.
struct Remainder {
  std::size_t index = 0;
  std::string_view text;
};

std::string_view firstWord(std::string_view text) { return text.substr(0, text.find(' ')); }

std::string_view afterFirstWord(std::string_view text) {
  text.remove_prefix(firstWord(text).size());
  text.remove_prefix(std::min<std::size_t>(text.size(), 1));
  return text;
}

Phrases textsOf(const std::vector<Remainder>& remainders) {
  Phrases texts;
  for (const Remainder& each : remainders) texts.push_back(each.text);
  return texts;
}

std::string neededAfter(const Phrases& following) {
  if (following.size() == 1) return "'" + std::string(following[0]) + "' after it";
  if (following.size() == 2) return std::string(following[0]) + " or " + std::string(following[1]);
  return oneOf(following);
}

/// The next bare word; empty where something other comes.
std::string_view nextWordOf(const Words& words) {
  return words.nextIs(Token::Kind::word) ? std::string_view(words.peek()->text) : "";
}

/// Most phrases begin with another letter: worlds have many words, and each is looked for among
/// all.
bool beginsWith(std::string_view phrase, std::string_view word) {
  if (phrase.empty() || word.empty() || phrase[0] != word[0]) return false;
  return phrase.starts_with(word) && (phrase.size() == word.size() || phrase[word.size()] == ' ');
}

/// The first of those that go on with the next word.
std::vector<Remainder>::const_iterator nextOf(const Words& words,
                                              const std::vector<Remainder>& open) {
  const std::string_view next = nextWordOf(words);
  return std::find_if(open.begin(), open.end(),
                      [&](const Remainder& each) { return beginsWith(each.text, next); });
}

/// Passes over the next word, and leaves what goes on with it open.
std::string takeWord(Words& words, std::vector<Remainder>& open) {
  const auto next = nextOf(words, open);
  if (next == open.end()) words.failUnknown(firstWords(textsOf(open)));
  const std::string_view word = firstWord(next->text);
  words.take(word);
  std::erase_if(open, [&](const Remainder& each) { return firstWord(each.text) != word; });
  for (Remainder& each : open) each.text = afterFirstWord(each.text);
  return std::string(word);
}

}  // namespace

/// At the end of the line what follows its last token.
Extent Words::extentOfNext() const {
  if (!atEnd()) return peek()->extent;
  if (line_.tokens.empty()) return {line_.indentation, 1};
  const Extent& last = line_.tokens.back().extent;
  return {last.begin + last.length, 1};
}

Extent Words::extentOfLast() const {
  return next_ == 0 ? extentOfNext() : line_.tokens[next_ - 1].extent;
}

void Words::fail(const std::string& cause) const {
  const bool isWhole = atEnd() && !line_.tokens.empty();
  const Extent first = isWhole ? line_.tokens.front().extent : extentOfLast();
  const std::size_t end = isWhole ? extentOfNext().begin : first.begin + first.length;
  throw WorldError({spot(), cause, {}, Extent{first.begin, end - first.begin}});
}

void Words::failAtLast(const std::string& cause) const {
  throw WorldError({spot(), cause, {}, extentOfLast()});
}

void Words::failNeeding(const char* owner, const char* what) const {
  std::string cause = std::string("'") + owner + "' needs " + what;
  if (!atEnd()) cause += ", not " + shown(*peek());
  throw WorldError({spot(), cause, {}, extentOfNext()});
}

void Words::failUnknown(const std::string& expected) const {
  const bool isWord = nextIs(Token::Kind::word);
  const char* kind = isWord ? "unknown word " : "unexpected ";
  throw WorldError({spot(), kind + shown(*peek()) + "; expected " + expected,
                    isWord ? nearest(peek()->text, listed(expected)) : "", extentOfNext()});
}

void Words::failUnknownName(const std::string& cause, const std::string& name,
                            const std::vector<std::string>& known) const {
  throw WorldError({spot(), cause, nearest(name, known), extentOfLast()});
}

bool Words::take(std::string_view word) {
  if (!nextIs(word)) return false;
  ++next_;
  return true;
}

bool Words::takeSemicolon() {
  if (!nextIs(Token::Kind::semicolon)) return false;
  ++next_;
  return true;
}

Line Words::rest() {
  const auto first = line_.tokens.begin() + static_cast<std::ptrdiff_t>(next_);
  next_ = line_.tokens.size();
  return {line_.number, line_.indentation, {first, line_.tokens.end()}, line_.trail};
}

void Words::expect(const char* owner, const char* word) {
  if (!take(word)) failNeeding(owner, (std::string("'") + word + "' after it").c_str());
}

void Words::expectEnd() const {
  if (atEnd()) return;
  throw WorldError(
      {spot(), "unexpected " + shown(*peek()) + " at the end of the line", {}, extentOfNext()});
}

std::string Words::word(const char* owner, const char* what) {
  if (!nextIs(Token::Kind::word)) failNeeding(owner, what);
  return line_.tokens[next_++].text;
}

std::string Words::text(const char* owner, const char* what) {
  if (!nextIs(Token::Kind::text)) failNeeding(owner, what);
  return line_.tokens[next_++].text;
}

std::string Words::name(const char* owner, const char* what) {
  if (atEnd() || nextIs(Token::Kind::semicolon)) failNeeding(owner, what);
  return line_.tokens[next_++].text;
}

template <class Parse>
auto Words::parsed(const char* owner, const char* what, Parse parse) {
  if (!nextIs(Token::Kind::word)) failNeeding(owner, what);
  const auto value = parse(peek()->text);
  if (!value) failNeeding(owner, what);
  ++next_;
  return *value;
}

std::int64_t Words::integer(const char* owner, const char* what, std::int64_t least,
                            std::int64_t most) {
  return parsed(owner, what, [&](std::string_view text) {
    const auto value = driver::parseInt64(text);
    return value && *value >= least && *value <= most ? value : std::nullopt;
  });
}

double Words::number(const char* owner, const char* what) {
  return parsed(owner, what, driver::parseDouble);
}

Point Words::point(const char* owner) {
  const auto [x, y] = parsed(owner, "X,Y", [](auto text) { return numbers(text, ','); });
  return {x, y};
}

Point Words::finitePoint(const char* owner) {
  const auto [x, y] = parsed(owner, "X,Y", [](auto text) {
    auto pair = numbers(text, ',');
    return pair && std::isfinite(pair->first) && std::isfinite(pair->second) ? pair : std::nullopt;
  });
  return {x, y};
}

Size Words::size(const char* owner) {
  const auto [width, height] =
      parsed(owner, "WIDTHxHEIGHT", [](auto text) { return numbers(text, 'x'); });
  return {width, height};
}

Rect Words::rect(const char* owner) { return parsed(owner, "X,Y,WIDTHxHEIGHT", rectOf); }

ax::Range Words::range(const char* owner) { return parsed(owner, "LOCATION+LENGTH", rangeOf); }

Microseconds Words::time(const char* owner) {
  return parsed(owner, "a time such as 250us, 100ms or 1.5s", timeOf);
}

Span Words::span(const char* owner) {
  return parsed(owner, "a time such as 250us, 100ms or 1.5s", spanOf);
}

std::string quotedWord(std::string_view word) {
  std::string quoted = inQuotes(word);
  const bool isPlain = !word.empty() && word.find_first_of(" \t\r\n;\"#") == word.npos;
  const bool hasOddBytes = quoted.find("\\x") != quoted.npos;
  return isPlain && !hasOddBytes ? std::string(word) : quoted;
}

std::string inQuotes(std::string_view text) {
  std::string quoted = "\"";
  while (!text.empty()) {
    const std::size_t length = lengthOfCharacter(text);
    if (length > 1) {
      quoted += text.substr(0, length);
    } else {
      quoted += writtenByte(text.front());
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return quoted + '"';
}

Phrases eachFirstWord(const Phrases& phrases) {
  Phrases found;
  for (const std::string_view phrase : phrases) {
    const std::string_view word = firstWord(phrase);
    if (std::find(found.begin(), found.end(), word) == found.end()) found.push_back(word);
  }
  return found;
}

std::string firstWords(const Phrases& phrases) {
  std::string list;
  for (const std::string_view word : eachFirstWord(phrases)) {
    if (!list.empty()) list += ", ";
    list += word;
  }
  return list;
}

std::string oneOf(const Phrases& phrases) { return "one of " + firstWords(phrases); }

std::size_t takePhrase(Words& words, const Phrases& phrases) {
  std::vector<Remainder> open;
  const std::string_view next = nextWordOf(words);
  for (std::size_t i = 0; i < phrases.size(); ++i) {
    if (beginsWith(phrases[i], next)) open.push_back({i, phrases[i]});
  }
  if (open.empty()) words.failUnknown(firstWords(phrases));
  std::string last = takeWord(words, open);
  while (!open.front().text.empty()) {
    if (nextOf(words, open) == open.end()) {
      const Phrases following = eachFirstWord(textsOf(open));
      const bool leavesNoChoice = following.size() == 1;
      if (words.atEnd() || leavesNoChoice) {
        words.failNeeding(last.c_str(), neededAfter(following).c_str());
      }
    }
    last = takeWord(words, open);
  }
  return open.front().index;
}

const char* lastWord(const char* phrase) {
  const char* blank = std::strrchr(phrase, ' ');
  return blank == nullptr ? phrase : blank + 1;
}

}  // namespace simulator
