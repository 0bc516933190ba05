// Runs the cases of tests/support/json_cases.h, which both sides of the seam are held to, through
// driver's own adapter and the real Foundation.
#import <Foundation/Foundation.h>

#include "tests/support/json_cases.h"

#include <string>
#include <vector>

#include "platform/json.h"
#include "support/answer.h"
#include "support/receiver.h"

namespace {

using json_cases::Case;

/// How many cases there were, and which ones came out otherwise.
struct Result {
  long long cases = 0;
  std::vector<std::string> different;

  void add(bool holds, const std::string& what, const std::string& text) {
    ++cases;
    // The deepest text is a megabyte long.
    if (!holds) different.push_back(what + ": " + text.substr(0, 80));
  }
};

void tryWriting(Result& result, const std::vector<Case>& cases) {
  for (const Case& each : cases) {
    const std::string text = json::write(each.value);
    result.add(text == each.text, "written", text);
  }
}

void tryReading(Result& result, const std::vector<Case>& cases) {
  for (const Case& each : cases)
    result.add(json::parse(each.text) == each.value, "read", each.text);
}

void tryRefusing(Result& result, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) result.add(!json::parse(text), "taken", text);
}

void tryAll(Result& result) {
  for (const auto& cases : {json_cases::containers, json_cases::texts, json_cases::numbers}) {
    tryWriting(result, cases);
    tryReading(result, cases);
  }
  tryWriting(result, json_cases::wholeDoubles);
  tryReading(result, json_cases::read);
  tryRefusing(result, json_cases::bareValues);
  tryRefusing(result, json_cases::noDocuments);
  tryRefusing(result, json_cases::illFormed);
  result.add(json::parse(json_cases::deepest).has_value(), "not read", json_cases::deepest);
  tryRefusing(result, {json_cases::bottomless});
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    Result result;
    tryAll(result);
    return probe::answer(probe::asked(count, words), probe::verdictOf(result.different.empty()),
                         probe::Evidence()
                             .add("cases", result.cases)
                             .addJson("different", probe::jsonList(result.different)));
  }
}
