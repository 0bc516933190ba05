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
  LineScanner(std::size_t number, std::string_view line, std::shared_ptr<const Trail> trail)
      : whole_(line), rest_(line) {
    line_.number = number;
    line_.trail = std::move(trail);
  }

  Line scan() {
    try {
      while (startsWith(' ')) skip(), ++line_.indentation;
      if (startsWith('\t')) fail("indent with spaces, not with tabs");
      while (skipBlanks()) line_.tokens.push_back(token());
    } catch (const WorldError& error) {
      line_.damage = error.complaint();
    }
    return std::move(line_);
  }

 private:
  std::size_t position() const { return whole_.size() - rest_.size(); }

  /// What cannot be read began at `start_`, and is of no use from here on.
  [[noreturn]] void fail(const std::string& cause) const {
    throw WorldError({spotOf(line_), cause, {}, Extent{start_, position() - start_}});
  }

  bool startsWith(char c) const { return !rest_.empty() && rest_.front() == c; }

  void skip() { rest_.remove_prefix(1); }

  /// False at the end of what the line says.
  bool skipBlanks() {
    while (!rest_.empty() && isBlank(rest_.front())) skip();
    start_ = position();
    return !rest_.empty() && rest_.front() != '#';
  }

  char take(const char* causeAtEnd) {
    if (rest_.empty()) fail(causeAtEnd);
    const char c = rest_.front();
    skip();
    return c;
  }

  Token token() {
    Token token;
    if (startsWith('"')) {
      token = {Token::Kind::text, quotedText()};
    } else if (startsWith(';')) {
      skip();
      token = {Token::Kind::semicolon, ";"};
    } else {
      token = {Token::Kind::word, word()};
    }
    token.extent = {start_, position() - start_};
    return token;
  }

  std::string word() {
    std::size_t length = 0;
    while (length < rest_.size() && !isBlank(rest_[length]) && rest_[length] != ';' &&
           rest_[length] != '"') {
      ++length;
    }
    std::string word(rest_.substr(0, length));
    rest_.remove_prefix(length);
    // A text may be an argument: NAME("text","text").
    const bool opens = word.back() == '(' || word.back() == ',';
    if (startsWith('"') && !opens) fail("a blank is missing after '" + word + "'");
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
    const bool ends = startsWith(';') || startsWith(',') || startsWith(')');
    if (!rest_.empty() && !isBlank(rest_.front()) && !ends) {
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

  Line line_;
  std::string_view whole_;
  std::string_view rest_;
  std::size_t start_ = 0;  // of the token
};

}  // namespace

std::vector<Line> scanDamagedLines(std::string_view text,
                                   const std::shared_ptr<const Trail>& trail) {
  std::vector<Line> lines;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    Line line = LineScanner(number, text.substr(0, end), trail).scan();
    if (!line.tokens.empty() || line.damage) lines.push_back(std::move(line));
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
  }
  return lines;
}

std::vector<Line> scanLines(std::string_view text) {
  std::vector<Line> lines = scanDamagedLines(text);
  for (const Line& line : lines) {
    if (line.damage) throw WorldError(*line.damage);
  }
  return lines;
}

}  // namespace simulator
