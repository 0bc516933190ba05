#include "main/arguments.h"

#include <optional>

#include "base/numbers.h"
#include "main/replies.h"

namespace driver {

namespace {

// The tool's own path and the command come before the arguments.
constexpr std::size_t leadingWords = 2;

}  // namespace

std::string usage(const CommandForm& form) {
  std::string text = "usage: " + std::string(form.name);
  if (!form.grammar.empty()) text += " " + std::string(form.grammar);
  return text;
}

void requireArity(const CommandForm& form, const Arguments& arguments) {
  const std::size_t count = arguments.size() - leadingWords;
  if (count >= form.fewest && count <= form.most) return;
  fail(form.wrongNumber.empty() ? usage(form) : std::string(form.wrongNumber));
}

double num(const Arguments& arguments, std::size_t index) {
  if (index < arguments.size()) {
    if (const std::optional<double> number = parseDouble(arguments[index])) return *number;
  }
  fail("missing numeric arg " + std::to_string(index));
}

platform::Point pointIn(const Arguments& arguments, std::size_t index) {
  const double x = num(arguments, index);
  return {x, num(arguments, index + 1)};
}

}  // namespace driver
