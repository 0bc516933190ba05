// Runs the cases of tests/support/text_cases.h, which both sides of the seam are held to, through
// driver's own adapter and the real Core Foundation.
#include "tests/support/text_cases.h"

#include "platform/text.h"
#include "support/cases.h"

namespace {

void tryAll(probe::Cases& result) {
  for (const auto& each : text_cases::lowercase)
    result.add(text::lowercase(each.given) == each.expected, "lowercase", each.given);
  for (const auto& each : text_cases::equal)
    result.add(text::equal(each.a, each.b) == each.expected, "equality", each.a + ", " + each.b);
  for (const auto& each : text_cases::canonical)
    result.add(text::canonical(each.given) == each.expected, "canonical form", each.given);
  for (const auto& each : text_cases::characters)
    result.add(text::characters(each.given) == each.expected, "characters", each.given);
  for (const auto& each : text_cases::prefix)
    result.add(text::prefix(each.given, each.count) == each.expected, "prefix", each.given);
  for (const auto& each : text_cases::trimmedBlanks)
    result.add(text::trimmedBlanks(each.given) == each.expected, "trimmed blanks", each.given);
  for (const auto& each : text_cases::words)
    result.add(text::words(each.given) == each.expected, "words", each.given);
}

}  // namespace

int main(int count, char** words) {
  probe::Cases result;
  tryAll(result);
  return result.answer(count, words);
}
