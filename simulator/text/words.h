#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/text/scanner.h"
#include "simulator/world/world.h"

namespace simulator {

/// Reads a line's tokens one after the other. Whatever does not fit throws a WorldError that names
/// the line. `owner` is the word a value belongs to and `what` says what the value must be: both
/// appear in the error, as in "'at' needs X,Y, not 'here'".
class Words {
 public:
  /// Borrows the line.
  explicit Words(const Line& line) : line_(line) {}

  std::size_t lineNumber() const { return line_.number; }
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

  /// Passes over the next token when it is this bare word.
  bool take(std::string_view word);
  bool takeSemicolon();

  /// What has not been read yet, as a line of its own; it counts as read.
  Line rest();

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

  [[noreturn]] void fail(const std::string& cause) const;
  [[noreturn]] void failNeeding(const char* owner, const char* what) const;
  /// The next token, which must be there, is none of `expected` ("at, size, value").
  [[noreturn]] void failUnknown(const std::string& expected) const;

 private:
  template <class Parse>
  auto parsed(const char* owner, const char* what, Parse parse);

  const Line& line_;
  std::size_t next_ = 0;
};

/// A word that may stand in a line, and what reads the rest of it into the target.
template <class Target>
struct Option {
  const char* word;
  void (*read)(Words& words, Target& target);
  bool repeatable = false;
};

/// The words of the options, for an error.
template <class Target, std::size_t count>
std::string wordsOf(const std::array<Option<Target>, count>& options) {
  std::string list;
  for (const Option<Target>& option : options) {
    if (!list.empty()) list += ", ";
    list += option.word;
  }
  return list;
}

/// The option that the next word names; that word is passed over.
template <class Target, std::size_t count>
std::size_t takeOption(Words& words, const std::array<Option<Target>, count>& options) {
  for (std::size_t i = 0; i < count; ++i) {
    if (words.take(options[i].word)) return i;
  }
  words.failUnknown(wordsOf(options));
}

/// Reads options, in any order, up to the end of the line.
template <class Target, std::size_t count>
void readOptions(Words& words, const std::array<Option<Target>, count>& options, Target& target) {
  std::bitset<count> seen;
  while (!words.atEnd()) {
    const std::size_t index = takeOption(words, options);
    const Option<Target>& option = options[index];
    if (seen[index] && !option.repeatable) {
      words.fail(std::string("'") + option.word + "' is given twice");
    }
    seen[index] = true;
    option.read(words, target);
  }
}

}  // namespace simulator
