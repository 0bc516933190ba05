// Runs the cases of tests/support/json_cases.h, which both sides of the seam are held to, through
// driver's own adapter and the real Foundation.
#import <Foundation/Foundation.h>

#include "tests/support/json_cases.h"

#include <string>
#include <vector>

#include "platform/json.h"
#include "support/cases.h"

namespace {

using json_cases::Case;

void tryWriting(probe::Cases& result, const std::vector<Case>& cases) {
  for (const Case& each : cases) {
    const std::string text = json::write(each.value);
    result.add(text == each.text, "written", text);
  }
}

void tryReading(probe::Cases& result, const std::vector<Case>& cases) {
  for (const Case& each : cases)
    result.add(json::parse(each.text) == each.value, "read", each.text);
}

void tryRefusing(probe::Cases& result, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) result.add(!json::parse(text), "taken", text);
}

void tryAll(probe::Cases& result) {
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
    probe::Cases result;
    tryAll(result);
    return result.answer(count, words);
  }
}
