// Writes values as JSON with the options that driver uses, and compares the spelling.
#import <Foundation/Foundation.h>

#include <string>
#include <vector>

#include "support/answer.h"

namespace {

using probe::Evidence;

struct Case {
  const char* what;
  id value;
  const char* expected;
};

std::string written(id value) {
  NSData* data = [NSJSONSerialization
      dataWithJSONObject:value
                 options:NSJSONWritingSortedKeys | NSJSONWritingFragmentsAllowed
                   error:nil];
  return {static_cast<const char*>(data.bytes), data.length};
}

NSNumber* real(double value) { return [NSNumber numberWithDouble:value]; }
NSNumber* whole(long long value) { return [NSNumber numberWithLongLong:value]; }

std::vector<Case> spellings() {
  return {
      {"slash", @"a/b", R"("a\/b")"},
      {"quote and backslash", @"\"\\", R"("\"\\")"},
      {"line feed, tab, return", @"\n\t\r", R"("\n\t\r")"},
      {"another control character", @"\x01", R"("\u0001")"},
      {"delete", @"\x7F", "\"\x7F\""},
      {"letters beyond ASCII", @"é😀", "\"é😀\""},
      {"line separator", @"\u2028", "\"\u2028\""},
      {"true", [NSNumber numberWithBool:YES], "true"},
      {"whole", whole(42), "42"},
      {"largest whole", whole(9223372036854775807), "9223372036854775807"},
      {"real without a fraction", real(10), "10"},
      {"real of one digit", real(0.5), "0.5"},
      {"real that needs 17 digits", real(0.1 + 0.2), "0.30000000000000004"},
      {"null", [NSNull null], "null"},
  };
}

/// As they stand, by their bytes.
std::vector<Case> orders() {
  return {
      {"letters", @{@"b" : @1, @"a" : @2}, R"({"a":2,"b":1})"},
      {"capital letters first", @{@"textValue" : @1, @"texts" : @2},
       R"({"textValue":1,"texts":2})"},
      {"digits by their bytes", @{@"a2" : @1, @"a10" : @2}, R"({"a10":2,"a2":1})"},
      {"a shorter one first", @{@"ab" : @1, @"a" : @2}, R"({"a":2,"ab":1})"},
  };
}

int answerFor(const std::string& assumption, const std::vector<Case>& cases) {
  Evidence evidence;
  bool holds = true;
  for (const Case& each : cases) {
    const std::string seen = written(each.value);
    evidence.add(each.what, seen);
    holds = holds && seen == each.expected;
  }
  // How a tenth is written is told and not judged: either spelling gives it back.
  if (assumption == "json-spelling") evidence.add("0.1, for information", written(real(0.1)));
  return probe::answer(assumption, probe::verdictOf(holds), evidence);
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    if (assumption == "json-key-order") return answerFor(assumption, orders());
    if (assumption == "json-spelling") return answerFor(assumption, spellings());
    return probe::notShown(assumption, "it is not asked here");
  }
}
