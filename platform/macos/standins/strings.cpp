#include "platform/macos/standins/strings.h"

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>

#include "platform/macos/standins/objects.h"

// What the compiler makes of CFSTR() points here.
extern "C" {
extern int __CFConstantStringClassReference[];
int __CFConstantStringClassReference[24] = {};
}

namespace standins {

namespace {

struct ConstantString {
  const void* classReference;
  unsigned long flags;
  const char* text;
  long length;
};

struct String : Object {
  explicit String(std::u16string units) : Object(Type::string), units(std::move(units)) {}
  std::string describe() const override;
  std::u16string units;
};

std::string quoted(const std::u16string& units) {
  std::string text;
  return '"' + icu::UnicodeString(units.data(), int(units.size())).toUTF8String(text) + '"';
}

std::string String::describe() const { return quoted(units); }

icu::UnicodeString unicode(CFStringRef string) {
  const std::u16string units = unitsOf(string);
  return {units.data(), int(units.size())};
}

void replace(CFMutableStringRef string, const icu::UnicodeString& content) {
  as<String>(string)->units.assign(content.getBuffer(), std::size_t(content.length()));
}

}  // namespace

CFStringRef string(std::u16string_view units) {
  return reinterpret_cast<CFStringRef>(entered(new String(std::u16string(units))));
}

std::u16string unitsOf(CFStringRef string) {
  if (!isConstantString(string)) return as<String>(string)->units;
  const auto* constant = reinterpret_cast<const ConstantString*>(string);
  return {constant->text, constant->text + constant->length};
}

std::string describeString(CFStringRef string) { return quoted(unitsOf(string)); }

bool isConstantString(CFTypeRef reference) {
  return static_cast<const ConstantString*>(reference)->classReference ==
         __CFConstantStringClassReference;
}

}  // namespace standins

using namespace standins;

CFTypeID CFStringGetTypeID() { return CFTypeID(Type::string); }

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* chars, CFIndex numChars) {
  return string({reinterpret_cast<const char16_t*>(chars), std::size_t(numChars)});
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex, CFStringRef theString) {
  return const_cast<CFMutableStringRef>(string(unitsOf(theString)));
}

CFIndex CFStringGetLength(CFStringRef theString) { return CFIndex(unitsOf(theString).size()); }

void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer) {
  const std::u16string units = unitsOf(theString);
  std::copy_n(units.begin() + range.location, range.length, buffer);
}

CFRange CFStringGetRangeOfComposedCharactersAtIndex(CFStringRef theString, CFIndex theIndex) {
  const icu::UnicodeString text = unicode(theString);
  // A carriage return and its line feed are two here, unlike in ICU.
  if (text[int(theIndex)] == u'\r' || text[int(theIndex)] == u'\n') return {theIndex, 1};
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> characters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  characters->setText(text);
  const int end = characters->following(int(theIndex));
  const int start = characters->previous();
  return {start, end - start};
}

void CFStringLowercase(CFMutableStringRef theString, CFLocaleRef locale) {
  if (locale != nullptr) noteMistake("lower case of a locale");
  replace(theString, unicode(theString).toLower(icu::Locale::getRoot()));
}

void CFStringNormalize(CFMutableStringRef theString, CFStringNormalizationForm theForm) {
  if (theForm != kCFStringNormalizationFormD) noteMistake("another form than D");
  UErrorCode status = U_ZERO_ERROR;
  const auto* decomposer = icu::Normalizer2::getNFDInstance(status);
  replace(theString, decomposer->normalize(unicode(theString), status));
}
