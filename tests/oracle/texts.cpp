#include "tests/oracle/texts.h"

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "tests/oracle/opinion.h"

namespace oracle {

namespace {

icu::UnicodeString unicodeOf(const std::string& text) { return icu::UnicodeString::fromUTF8(text); }

std::string bytesOf(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

bool isBlank(UChar32 c) { return c == 0x09 || u_charType(c) == U_SPACE_SEPARATOR; }

bool isSpaceOrBreak(UChar32 c) {
  return isBlank(c) || (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

icu::UnicodeString composed(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* form = icu::Normalizer2::getNFCInstance(status);
  const icu::UnicodeString result = form->normalize(unicodeOf(text), status);
  if (U_FAILURE(status)) throw std::runtime_error("ICU cannot compose");
  return result;
}

bool splitsCharacter(const icu::UnicodeString& text, std::int32_t at) {
  return at > 0 && at < text.length() && U16_IS_LEAD(text[at - 1]) && U16_IS_TRAIL(text[at]);
}

}  // namespace

std::string repaired(const std::string& text) { return bytesOf(unicodeOf(text)); }

std::string lowered(const std::string& text) {
  return bytesOf(unicodeOf(text).toLower(icu::Locale::getRoot()));
}

bool same(const std::string& a, const std::string& b) { return composed(a) == composed(b); }

bool contains(const std::string& whole, const std::string& part) {
  return whole.find(part) != std::string::npos;
}

bool containsLabel(const std::string& whole, const std::string& part) {
  return composed(whole).indexOf(composed(part)) >= 0;
}

std::string squashed(const std::string& text) {
  const icu::UnicodeString whole = unicodeOf(text);
  icu::UnicodeString result;
  bool between = false;
  for (std::int32_t i = 0; i < whole.length(); i = whole.moveIndex32(i, 1)) {
    const UChar32 c = whole.char32At(i);
    if (isSpaceOrBreak(c)) {
      between = !result.isEmpty();
      continue;
    }
    if (between) result.append(static_cast<UChar32>(' '));
    between = false;
    result.append(c);
  }
  return bytesOf(result);
}

std::string normalizedLabel(const std::string& text) { return squashed(lowered(text)); }

std::string trimmedBlanks(const std::string& text) {
  std::vector<UChar32> kept;
  const icu::UnicodeString whole = unicodeOf(text);
  for (std::int32_t i = 0; i < whole.length(); i = whole.moveIndex32(i, 1)) {
    const UChar32 c = whole.char32At(i);
    if (kept.empty() && isBlank(c)) continue;
    kept.push_back(c);
  }
  while (!kept.empty() && isBlank(kept.back())) kept.pop_back();
  icu::UnicodeString result;
  for (const UChar32 c : kept) result.append(c);
  return bytesOf(result);
}

std::vector<std::string> charactersOf(const std::string& text) {
  const icu::UnicodeString whole = unicodeOf(text);
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> breaks(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  if (U_FAILURE(status)) throw std::runtime_error("ICU cannot divide");
  breaks->setText(whole);
  std::vector<std::string> characters;
  std::int32_t start = breaks->first();
  for (std::int32_t end = breaks->next(); end != icu::BreakIterator::DONE; end = breaks->next()) {
    characters.push_back(bytesOf(whole.tempSubStringBetween(start, end)));
    start = end;
  }
  return characters;
}

std::string firstCharacters(const std::string& text, std::size_t count) {
  std::string result;
  for (const std::string& character : charactersOf(text)) {
    if (count-- == 0) break;
    result += character;
  }
  return result;
}

std::int64_t utf16Length(const std::string& text) { return unicodeOf(text).length(); }

std::string withReplaced(const std::string& text, std::int64_t location, std::int64_t length,
                         const std::string& replacement) {
  icu::UnicodeString whole = unicodeOf(text);
  const auto start = static_cast<std::int32_t>(location);
  const auto end = static_cast<std::int32_t>(location + length);
  if (splitsCharacter(whole, start) || splitsCharacter(whole, end)) {
    throw NoOpinion{Silence::splitCharacter};
  }
  return bytesOf(whole.replaceBetween(start, end, unicodeOf(replacement)));
}

std::string lastUnits(const std::string& text, std::int64_t count) {
  const icu::UnicodeString whole = unicodeOf(text);
  const auto length = static_cast<std::int64_t>(whole.length());
  if (length <= count) return text;
  const auto start = static_cast<std::int32_t>(length - count);
  if (splitsCharacter(whole, start)) throw NoOpinion{Silence::splitCharacter};
  return bytesOf(whole.tempSubString(start));
}

std::string utf16Bytes(const std::string& text) {
  const icu::UnicodeString whole = unicodeOf(text);
  std::string bytes;
  for (std::int32_t i = 0; i < whole.length(); ++i) {
    bytes += static_cast<char>(whole[i] & 0xFF);
    bytes += static_cast<char>(whole[i] >> 8);
  }
  return bytes;
}

std::vector<std::string> splitAt(const std::string& text, const std::string& separator) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != std::string::npos;
       end = text.find(separator, start)) {
    pieces.push_back(text.substr(start, end - start));
    start = end + separator.size();
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
  std::string result;
  for (std::size_t i = 0; i < parts.size(); ++i) result += (i == 0 ? "" : separator) + parts[i];
  return result;
}

std::string roleName(const std::string& role) {
  return lowered(role.compare(0, 2, "AX") == 0 ? role.substr(2) : role);
}

std::optional<std::int64_t> wholeNumber(const std::string& text, std::int64_t least,
                                        std::int64_t most) {
  const bool hasSign = !text.empty() && (text[0] == '+' || text[0] == '-');
  const std::string digits = text.substr(hasSign ? 1 : 0);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  try {
    const std::int64_t number = std::stoll(text);
    if (number < least || number > most) return std::nullopt;
    return number;
  } catch (const std::out_of_range&) {
    return std::nullopt;
  }
}

std::optional<double> realNumber(const std::string& text) {
  if (text.empty() || std::string("+-.0123456789iInN").find(text[0]) == std::string::npos) {
    return std::nullopt;
  }
  if (text.find_first_of("xXpP(") != std::string::npos) throw NoOpinion{Silence::oddNumber};
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (end != text.c_str() + text.size()) return std::nullopt;
  const bool isSpelt = text.find_first_of("iInN") != std::string::npos;
  if (!std::isfinite(number) && !isSpelt) throw NoOpinion{Silence::oddNumber};
  return number;
}

}  // namespace oracle
