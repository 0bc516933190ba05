#include "guard/input_lines.h"

namespace driver {

namespace {

constexpr std::string_view operatingWord = "operating";
constexpr std::string_view mindingWord = "minding";

bool isBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

// Ill-formed bytes are like any others: repaired or not, they are in neither word.
void GuardInput::add(char c) {
  if (isOther_) return;
  if (isBlank(c)) {
    blankBehind_ = !word_.empty();
    return;
  }
  isOther_ = blankBehind_ || word_.size() == operatingWord.size();
  if (!isOther_) word_ += c;
}

std::optional<bool> GuardInput::meaning() const {
  if (isOther_) return std::nullopt;
  if (word_ == operatingWord) return true;
  if (word_ == mindingWord) return false;
  return std::nullopt;
}

std::optional<bool> GuardInput::feed(std::string_view bytes) {
  std::optional<bool> last;
  for (const char c : bytes) {
    if (c != '\n') {
      add(c);
      continue;
    }
    if (const std::optional<bool> said = meaning()) last = said;
    *this = {};
  }
  return last;
}

}  // namespace driver
