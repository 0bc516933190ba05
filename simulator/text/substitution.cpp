#include "simulator/text/substitution.h"

#include <algorithm>
#include <vector>

#include "simulator/text/gathering.h"
#include "simulator/text/nearest.h"

namespace simulator {

namespace {

const Token& boundTo(const Line& line, const Token& token, const Bindings& bindings,
                     const std::string& name) {
  const auto found = bindings.find(name);
  if (found != bindings.end()) return found->second;
  std::vector<std::string> known;
  for (const auto& [each, value] : bindings) known.push_back(each);
  throw WorldError(
      {spotOf(line), "no parameter is called '" + name + "'", nearest(name, known), token.extent});
}

/// The name in braces at the beginning of the text; empty when none is there.
std::string nameAtBeginning(std::string_view text) {
  const std::size_t end = std::min(text.find('}'), text.size());
  const std::string_view name = text.substr(1, end - 1);
  return end < text.size() && isParameterName(name) ? std::string(name) : std::string();
}

void substituteIn(const Line& line, const Bindings& bindings, Token& token) {
  std::string text;
  for (std::string_view rest = token.text; !rest.empty();) {
    const std::size_t brace = std::min(rest.find('{'), rest.size());
    text += rest.substr(0, brace);
    rest.remove_prefix(brace);
    if (rest.empty()) break;
    const std::string name = nameAtBeginning(rest);
    if (name.empty()) {
      text += '{';
      rest.remove_prefix(rest.substr(0, 2) == "{{" ? 2 : 1);
      continue;
    }
    const Token& value = boundTo(line, token, bindings, name);
    const std::size_t length = name.size() + 2;
    if (token.kind == Token::Kind::word && token.text.size() == length) {
      token.kind = value.kind;
    }
    text += value.text;
    rest.remove_prefix(length);
  }
  token.text = std::move(text);
}

}  // namespace

void substitute(Line& line, const Bindings& bindings) {
  if (bindings.empty()) return;
  for (Token& token : line.tokens) {
    if (token.text.find('{') != token.text.npos) substituteIn(line, bindings, token);
  }
}

}  // namespace simulator
