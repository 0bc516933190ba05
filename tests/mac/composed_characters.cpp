// Asks Core Foundation where characters begin, as driver does to cut texts.
#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <vector>

#include "support/answer.h"

namespace {

struct Case {
  const char* what;
  std::u16string text;
  std::vector<CFIndex> lengths;  // of the characters, in UTF-16 units
};

// As the simulated Mac cuts them, but for CR LF, which the adapter joins itself.
const std::vector<Case> cases = {
    {"letters", u"ab", {1, 1}},
    {"combining accent", u"e\u0301x", {2, 1}},
    {"surrogate pair", u"\U0001F600!", {2, 1}},
    {"family", u"\U0001F468\u200D\U0001F469\u200D\U0001F467", {8}},
    {"two flags", u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", {4, 4}},
    {"three regional indicators", u"\U0001F1E9\U0001F1EA\U0001F1EB", {4, 2}},
    {"skin tone", u"\U0001F44D\U0001F3FD", {4}},
    {"keycap", u"1\uFE0F\u20E3", {3}},
    {"flag by tags",
     u"\U0001F3F4\U000E0067\U000E0062\U000E0065\U000E006E\U000E0067\U000E007F",
     {14}},
    {"Hangul syllable of parts", u"\u1112\u1161\u11AB", {3}},
    {"CR LF", u"\r\n", {1, 1}},
};

std::vector<CFIndex> lengthsOf(const std::u16string& text) {
  CFStringRef native = CFStringCreateWithCharacters(
      nullptr, reinterpret_cast<const UniChar*>(text.data()), static_cast<CFIndex>(text.size()));
  std::vector<CFIndex> lengths;
  for (CFIndex at = 0; at < CFStringGetLength(native);) {
    const CFRange range = CFStringGetRangeOfComposedCharactersAtIndex(native, at);
    lengths.push_back(range.length);
    at = range.location + range.length;
    if (range.length == 0) break;
  }
  CFRelease(native);
  return lengths;
}

std::string json(const std::vector<CFIndex>& lengths) {
  std::string text = "[";
  for (const CFIndex length : lengths) {
    if (text.size() > 1) text += ", ";
    text += std::to_string(length);
  }
  return text + "]";
}

}  // namespace

int main(int count, char** words) {
  probe::Evidence evidence;
  bool asAssumed = true;
  for (const Case& each : cases) {
    const std::vector<CFIndex> lengths = lengthsOf(each.text);
    evidence.addJson(each.what, json(lengths));
    asAssumed = asAssumed && lengths == each.lengths;
  }
  return probe::answer(probe::asked(count, words), probe::verdictOf(asAssumed), evidence);
}
