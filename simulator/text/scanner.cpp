#include "simulator/text/scanner.h"

#include <utility>

#include "simulator/text/error.h"
#include "simulator/world/utf16_text.h"

namespace simulator {

namespace {

constexpr char32_t lastCodePoint = 0x10FFFF;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

/// -1 for a character that is no hexadecimal digit.
int hexadecimalDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// Reads the tokens of one line.
class LineScanner {
 public:
  LineScanner(std::size_t number, std::string_view line) : number_(number), rest_(line) {}

  Line scan() {
    Line line;
    line.number = number_;
    while (startsWith(' ')) skip(), ++line.indentation;
    if (startsWith('\t')) fail("indent with spaces, not with tabs");
    while (skipBlanks()) line.tokens.push_back(token());
    return line;
  }

 private:
  [[noreturn]] void fail(const std::string& cause) const { throw WorldError(number_, cause); }

  bool startsWith(char c) const { return !rest_.empty() && rest_.front() == c; }

  void skip() { rest_.remove_prefix(1); }

  /// False at the end of what the line says.
  bool skipBlanks() {
    while (!rest_.empty() && isBlank(rest_.front())) skip();
    return !rest_.empty() && rest_.front() != '#';
  }

  char take(const char* causeAtEnd) {
    if (rest_.empty()) fail(causeAtEnd);
    const char c = rest_.front();
    skip();
    return c;
  }

  Token token() {
    if (startsWith('"')) return {Token::Kind::text, quotedText()};
    if (startsWith(';')) {
      skip();
      return {Token::Kind::semicolon, ";"};
    }
    return {Token::Kind::word, word()};
  }

  std::string word() {
    std::size_t length = 0;
    while (length < rest_.size() && !isBlank(rest_[length]) && rest_[length] != ';' &&
           rest_[length] != '"') {
      ++length;
    }
    std::string word(rest_.substr(0, length));
    rest_.remove_prefix(length);
    if (startsWith('"')) fail("a blank is missing after '" + word + "'");
    return word;
  }

  std::string quotedText() {
    constexpr const char* unclosed = "a text lacks its closing quotation mark";
    std::string text;
    skip();
    for (char c = take(unclosed); c != '"'; c = take(unclosed)) {
      if (c == '\\') {
        escape(take(unclosed), text);
      } else {
        text += c;
      }
    }
    if (!rest_.empty() && !isBlank(rest_.front()) && !startsWith(';')) {
      fail("a blank is missing after \"" + text + "\"");
    }
    return text;
  }

  void escape(char c, std::string& text) {
    switch (c) {
      case '"':
      case '\\':
        text += c;
        return;
      case 'n':
        text += '\n';
        return;
      case 't':
        text += '\t';
        return;
      case 'x':
        text += rawByte();
        return;
      case 'u':
        appendCodePoint(text, codePoint());
        return;
      default:
        fail(std::string("unknown escape '\\") + c +
             R"('; expected \" \\ \n \t \u{…} or \x and two digits)");
    }
  }

  char rawByte() {
    constexpr const char* cause = R"('\x' needs two hexadecimal digits)";
    const int high = hexadecimalDigit(take(cause));
    const int low = hexadecimalDigit(take(cause));
    if (high < 0 || low < 0) fail(cause);
    return static_cast<char>(high * 16 + low);
  }

  char32_t codePoint() {
    constexpr const char* cause = R"('\u' needs a code point such as \u{1F600})";
    if (take(cause) != '{') fail(cause);
    char32_t code = 0;
    std::size_t digits = 0;
    for (char c = take(cause); c != '}'; c = take(cause), ++digits) {
      const int digit = hexadecimalDigit(c);
      if (digit < 0) fail(cause);
      code = code * 16 + static_cast<char32_t>(digit);
      if (code > lastCodePoint) fail(cause);
    }
    if (digits == 0) fail(cause);
    return code;
  }

  std::size_t number_;
  std::string_view rest_;
};

}  // namespace

std::vector<Line> scanLines(std::string_view text) {
  std::vector<Line> lines;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    Line line = LineScanner(number, text.substr(0, end)).scan();
    if (!line.tokens.empty()) lines.push_back(std::move(line));
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
  }
  return lines;
}

}  // namespace simulator
