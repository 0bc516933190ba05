#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/text/scanner.h"
#include "simulator/world/world.h"

namespace simulator {

/// What a path must be, in the words of errors.
inline constexpr const char* aPath = "a quoted path";

/// Reads a line's tokens one after the other. Whatever does not fit throws a WorldError that names
/// the line. `owner` is the word a value belongs to and `what` says what the value must be: both
/// appear in the error, as in "'at' needs X,Y, not 'here'".
class Words {
 public:
  /// Borrows the line.
  explicit Words(const Line& line) : line_(line) {}

  Spot spot() const { return spotOf(line_); }
  bool atEnd() const { return next_ == line_.tokens.size(); }

  /// The next token, or null at the end.
  const Token* peek() const { return atEnd() ? nullptr : &line_.tokens[next_]; }
  bool nextIs(Token::Kind kind) const { return !atEnd() && peek()->kind == kind; }
  bool nextIs(std::string_view word) const {
    return nextIs(Token::Kind::word) && peek()->text == word;
  }

  /// The next token is a bare word that begins with "AX".
  bool nextIsRole() const {
    return nextIs(Token::Kind::word) && peek()->text.compare(0, 2, "AX") == 0;
  }

  /// The next token is a bare word that begins with a digit.
  bool nextIsNumber() const {
    return nextIs(Token::Kind::word) && peek()->text[0] >= '0' && peek()->text[0] <= '9';
  }

  /// Passes over the next token when it is this bare word.
  bool take(std::string_view word);
  bool takeSemicolon();

  /// What has not been read yet, as a line of its own; it counts as read.
  Line rest();

  /// The next token, which must be there; it is passed over.
  const Token& token() { return line_.tokens[next_++]; }

  void expect(const char* owner, const char* word);
  /// Throws unless everything has been read.
  void expectEnd() const;

  std::string word(const char* owner, const char* what);
  std::string text(const char* owner, const char* what);
  /// A bare word or a quoted text.
  std::string name(const char* owner, const char* what);

  std::int64_t integer(const char* owner, const char* what, std::int64_t least, std::int64_t most);
  double number(const char* owner, const char* what);
  Point point(const char* owner);
  Point finitePoint(const char* owner);
  Size size(const char* owner);
  Rect rect(const char* owner);
  ax::Range range(const char* owner);
  Microseconds time(const char* owner);
  /// A time, or LEAST..MOST.
  Span span(const char* owner);

  /// What was read last is wrong, or at the end of the line all of it.
  [[noreturn]] void fail(const std::string& cause) const;
  [[noreturn]] void failNeeding(const char* owner, const char* what) const;
  /// The next token, which must be there, is none of `expected` ("at, size, value").
  [[noreturn]] void failUnknown(const std::string& expected) const;
  /// What was read last is wrong, whatever follows.
  [[noreturn]] void failAtLast(const std::string& cause) const;
  /// A name that was read last is none of those known.
  [[noreturn]] void failUnknownName(const std::string& cause, const std::string& name,
                                    const std::vector<std::string>& known) const;

 private:
  template <class Parse>
  auto parsed(const char* owner, const char* what, Parse parse);

  Extent extentOfNext() const;
  Extent extentOfLast() const;

  const Line& line_;
  std::size_t next_ = 0;
};

/// A word as a line has it: in quotation marks where it would not stand for itself.
std::string quotedWord(std::string_view word);

/// A text as a line has it.
std::string inQuotes(std::string_view text);

/// What may stand in a line: the words it begins with, and what reads the rest of it into the
/// target.
template <class Target>
struct Option {
  const char* phrase;
  void (*read)(Words& words, Target& target);
  bool repeatable = false;
};

/// The phrases of some rows, in their order. None is the beginning of another.
using Phrases = std::vector<std::string_view>;

/// Rows are options, or whatever else has a `phrase`.
template <class Row, std::size_t count>
Phrases phrasesOf(const std::array<Row, count>& rows) {
  Phrases phrases;
  phrases.reserve(count);
  for (const Row& row : rows) phrases.emplace_back(row.phrase);
  return phrases;
}

/// The words that the phrases begin with, each once, for an error: "lock, quit, user".
std::string firstWords(const Phrases& phrases);

/// These words.
Phrases eachFirstWord(const Phrases& phrases);

/// "one of lock, quit, user".
std::string oneOf(const Phrases& phrases);

/// The place of the phrase that comes next; its words are passed over.
std::size_t takePhrase(Words& words, const Phrases& phrases);

/// The last word of a phrase, to which what follows belongs.
const char* lastWord(const char* phrase);

/// Reads options, in any order, up to the end of the line. Rows have `phrase`, `read` and
/// `repeatable`.
template <class Row, std::size_t count, class Target>
void readOptions(Words& words, const std::array<Row, count>& options, Target& target) {
  const Phrases phrases = phrasesOf(options);
  std::bitset<count> seen;
  while (!words.atEnd()) {
    const std::string first = words.peek()->text;
    const std::size_t index = takePhrase(words, phrases);
    if (seen[index] && !options[index].repeatable)
      words.failAtLast("'" + first + "' is given twice");
    seen[index] = true;
    options[index].read(words, target);
  }
}

}  // namespace simulator
