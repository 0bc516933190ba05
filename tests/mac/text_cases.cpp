// Runs the cases of tests/support/text_cases.h, which both sides of the seam are held to, through
// driver's own adapter and the real Core Foundation.
#include "tests/support/text_cases.h"

#include <string>
#include <vector>

#include "platform/text.h"
#include "support/answer.h"
#include "support/receiver.h"

namespace {

/// How many cases there were, and which ones came out otherwise.
struct Result {
  long long cases = 0;
  std::vector<std::string> different;

  void add(bool holds, const std::string& function, const std::string& given) {
    ++cases;
    if (!holds) different.push_back(function + " of " + given);
  }
};

void tryAll(Result& result) {
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
  Result result;
  tryAll(result);
  return probe::answer(probe::asked(count, words), probe::verdictOf(result.different.empty()),
                       probe::Evidence()
                           .add("cases", result.cases)
                           .addJson("different", probe::jsonList(result.different)));
}
