#include "simulator/text/call.h"

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

/// Reads arguments up to the closing parenthesis. Blanks, commas and quotation marks end tokens
/// where they like: a bare token may hold several arguments.
class ArgumentReader {
 public:
  explicit ArgumentReader(Words& words) : words_(words) {}

  /// `rest` is what the name's token has behind the opening parenthesis.
  std::vector<Token> read(std::string_view rest) {
    readPieces(rest);
    while (!closed_) {
      if (words_.atEnd() || words_.nextIs(Token::Kind::semicolon)) words_.fail("a ')' is missing");
      const Token token = words_.token();
      if (token.kind == Token::Kind::text) {
        add(token);
      } else {
        readPieces(token.text);
      }
    }
    return std::move(arguments_);
  }

  /// By place: the labels of elements whose values are meant.
  std::map<std::size_t, std::string> held() { return std::move(held_); }

 private:
  bool isHeld(const Token& token) const {
    if (expects_ || arguments_.empty()) return false;
    const Token& last = arguments_.back();
    return last.kind == Token::Kind::word && last.text == "value" &&
           token.kind == Token::Kind::word && token.text == "of";
  }

  void add(Token argument) {
    if (awaitsLabel_) {
      held_[arguments_.size() - 1] = std::move(argument.text);
      awaitsLabel_ = false;
      return;
    }
    if (isHeld(argument)) {
      arguments_.back() = {Token::Kind::text, ""};
      awaitsLabel_ = true;
      return;
    }
    if (!expects_) words_.failAtLast("a comma is missing between arguments");
    arguments_.push_back(std::move(argument));
    expects_ = false;
  }

  /// A comma promises another argument; the only parenthesis without one follows the opening one.
  void endArgument(bool isComma) {
    if (awaitsLabel_) words_.failAtLast("'of' needs the label of an element");
    if (expects_ && (isComma || !arguments_.empty())) words_.failAtLast("an argument is missing");
    expects_ = isComma;
    closed_ = !isComma;
  }

  void readPieces(std::string_view rest) {
    while (!rest.empty()) {
      if (closed_) words_.failAtLast("a blank is missing after ')'");
      const std::size_t length = std::min(rest.find_first_of(",)"), rest.size());
      if (length == 0) {
        endArgument(rest.front() == ',');
        rest.remove_prefix(1);
        continue;
      }
      add({Token::Kind::word, std::string(rest.substr(0, length))});
      rest.remove_prefix(length);
    }
  }

  Words& words_;
  std::vector<Token> arguments_;
  std::map<std::size_t, std::string> held_;
  bool expects_ = true;
  bool awaitsLabel_ = false;
  bool closed_ = false;
};

}  // namespace

Call readCall(Words& words, const char* owner) {
  const std::string whole = words.word(owner, "a name, as in Message(\"Ada\", 3)");
  const std::size_t opening = whole.find('(');
  Call call{whole.substr(0, opening), {}, words.spot()};
  if (call.name.empty() || call.name.find_first_of("{},)") != call.name.npos) {
    words.failAtLast("'" + whole + "' does not begin with a name");
  }
  if (opening == whole.npos) return call;
  ArgumentReader reader(words);
  call.arguments = reader.read(std::string_view(whole).substr(opening + 1));
  call.held = reader.held();
  return call;
}

}  // namespace simulator
