#include "platform/text.h"

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace text {

namespace {

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int>(text.size())));
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isBlank(UChar32 c) { return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR; }

bool isWhiteSpace(UChar32 c) {
  return isBlank(c) || (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

/// Goes through the ends of the characters of `text`, which must outlive it.
std::unique_ptr<icu::BreakIterator> characterEnds(const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::BreakIterator> ends(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  if (U_FAILURE(status)) std::abort();  // ICU without its data
  ends->setText(text);
  return ends;
}

}  // namespace

// The root locale stands for none: Turkish and Lithuanian have rules of their own.
std::string lowercase(std::string_view text) {
  return utf8(unicode(text).toLower(icu::Locale::getRoot()));
}

bool equal(std::string_view a, std::string_view b) {
  if (a == b) return true;
  // Nearly all comparisons are of labels that differ, in a walk of ten thousand elements.
  if (isAscii(a) && isAscii(b)) return false;
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
  if (U_FAILURE(status)) return false;
  const icu::UnicodeString left = nfd->normalize(unicode(a), status);
  const icu::UnicodeString right = nfd->normalize(unicode(b), status);
  return U_SUCCESS(status) && left == right;
}

std::string canonical(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) return std::string(text);
  const icu::UnicodeString composed = nfc->normalize(unicode(text), status);
  return U_SUCCESS(status) ? utf8(composed) : std::string(text);
}

std::vector<std::string> characters(std::string_view text) {
  const icu::UnicodeString whole = unicode(text);
  const auto ends = characterEnds(whole);
  std::vector<std::string> pieces;
  std::int32_t start = 0;
  for (std::int32_t end = ends->next(); end != icu::BreakIterator::DONE; end = ends->next()) {
    pieces.push_back(utf8(whole.tempSubStringBetween(start, end)));
    start = end;
  }
  return pieces;
}

std::string prefix(std::string_view text, std::size_t count) {
  if (text.size() <= count) return std::string(text);  // a character takes a byte at least
  const icu::UnicodeString whole = unicode(text);
  const auto ends = characterEnds(whole);
  std::int32_t end = 0;
  for (std::size_t taken = 0; taken < count; ++taken) {
    const std::int32_t next = ends->next();
    if (next == icu::BreakIterator::DONE) break;
    end = next;
  }
  return utf8(whole.tempSubString(0, end));
}

std::string trimmedBlanks(std::string_view text) {
  const icu::UnicodeString whole = unicode(text);
  std::int32_t start = 0;
  std::int32_t end = whole.length();
  while (start < end && isBlank(whole.char32At(start))) start = whole.moveIndex32(start, 1);
  while (end > start) {
    const std::int32_t previous = whole.moveIndex32(end, -1);
    if (!isBlank(whole.char32At(previous))) break;
    end = previous;
  }
  return utf8(whole.tempSubStringBetween(start, end));
}

std::vector<std::string> words(std::string_view text) {
  const icu::UnicodeString whole = unicode(text);
  std::vector<std::string> pieces;
  std::int32_t start = 0;
  for (std::int32_t i = 0; i <= whole.length(); i = whole.moveIndex32(i, 1)) {
    const bool atEnd = i == whole.length();
    if (!atEnd && !isWhiteSpace(whole.char32At(i))) continue;
    if (i > start) pieces.push_back(utf8(whole.tempSubStringBetween(start, i)));
    if (atEnd) break;
    start = whole.moveIndex32(i, 1);
  }
  return pieces;
}

}  // namespace text
