#include "tests/soak/texts.h"

#include <array>
#include <string_view>

namespace soak {

namespace {

constexpr std::array<std::string_view, 14> plainLabels = {
    "Send", "Body", "Search", "OK",   "Cancel", "Size",  "Log",
    "send", "Name", "Delete", "Save", "Call",   "Row 1", "Sending"};

constexpr std::array<std::string_view, 9> plainTitles = {"Inbox",        "Start", "Private",
                                                         "Inbox — Mail", "draft", "Inbox",
                                                         "News — Inbox", "INBOX", "Inbox 2"};

constexpr std::array<std::string_view, 11> plainProses = {
    "hello",
    "hello ",
    "Dear Ada,\nall is well.",
    "a",
    "Send",
    "two\nlines",
    "",
    "one, two and three and four, and five words more",
    "42",
    "Body",
    "a🌍🌍🌍🌍🌍🌍🌍🌍🌍🌍🌍"};

constexpr std::array<std::string_view, 26> oddTexts = {
    "",
    " ",
    "\t",
    "\n",
    "\n\n",
    "a\r\nb",
    "\x7F",
    "\x01",
    "caf\xC3\xA9",
    "cafe\xCC\x81",
    "\xF0\x9F\x91\xA9\xF0\x9F\x8F\xBD\xE2\x80\x8D\xF0\x9F\x92\xBB",  // one character of four
    "\xE6\x88\x91\xE4\xBB\xAC",
    "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D",
    "\xFF\xFE",
    "a\xC3",
    "\xED\xA0\x80",      // half of a surrogate pair
    "\xF4\x90\x80\x80",  // beyond the last character
    "\xE2\x80\xA8",      // a line separator
    "\xEF\xBB\xBFx",
    "\xEF\xBC\xB3\xEF\xBD\x85\xEF\xBD\x8E\xEF\xBD\x84",  // Send, in wide letters
    "\xC4\xB0stanbul",
    "Stra\xC3\x9F"
    "e",
    "\"quoted\" \\ \\n",
    " Send ",
    "pid:41",
    "com.example.notes"};

constexpr std::array<std::string_view, 26> oddNumbers = {"0",
                                                         "-0",
                                                         "-1",
                                                         "1e3",
                                                         "1e400",
                                                         "-1e400",
                                                         "nan",
                                                         "inf",
                                                         "-inf",
                                                         "0x10",
                                                         "1.",
                                                         ".5",
                                                         " 1",
                                                         "1 ",
                                                         "+1",
                                                         "",
                                                         "2147483648",
                                                         "9223372036854775808",
                                                         "-2147483649",
                                                         "1e-400",
                                                         "1,5",
                                                         "ten",
                                                         "99999999999999999999",
                                                         "4294967296",
                                                         "-1.5",
                                                         "1e18"};

constexpr std::array<std::string_view, 3> fewLabels = {"Send", "Sending", "Body"};
constexpr std::array<std::string_view, 2> fewTitles = {"Inbox", "News — Inbox"};
constexpr std::array<std::string_view, 5> fewProses = {"hello", "hello", "a", "line\n", ""};

/// One of the plain texts, or of the few.
template <class Plain, class Few>
std::string pick(Random& random, const Features& features, const Plain& plain, const Few& few) {
  return std::string(features.fewTexts ? random.pick(few) : random.pick(plain));
}

}  // namespace

std::string label(Random& random, const Features& features) {
  if (features.oddTexts && random.oneIn(3)) return oddText(random);
  return pick(random, features, plainLabels, fewLabels);
}

std::string title(Random& random, const Features& features) {
  if (features.oddTexts && random.oneIn(3)) return oddText(random);
  return pick(random, features, plainTitles, fewTitles);
}

std::string prose(Random& random, const Features& features) {
  if (features.oddTexts && random.oneIn(2)) return oddText(random);
  return pick(random, features, plainProses, fewProses);
}

std::string oddText(Random& random) {
  std::string text(random.pick(oddTexts));
  if (random.oneIn(4)) text += random.pick(oddTexts);
  if (!random.oneIn(12)) return text;
  std::string longText;
  const std::size_t times = 1 + random.below(300);
  for (std::size_t i = 0; i < times; ++i) longText += text + "x";
  return longText;
}

std::string oddNumber(Random& random) { return std::string(random.pick(oddNumbers)); }

}  // namespace soak
