// Asks for the user's languages and name in a tool without a bundle. The name is not told.
#import <Foundation/Foundation.h>

#include <string>

#include "support/answer.h"
#include "support/system.h"

namespace {

using probe::Evidence;

std::string text(CFTypeRef value) {
  char buffer[256] = "";
  if (value != nullptr && CFGetTypeID(value) == CFStringGetTypeID())
    CFStringGetCString(static_cast<CFStringRef>(value), buffer, sizeof buffer,
                       kCFStringEncodingUTF8);
  return buffer;
}

std::string first(CFTypeRef list) {
  if (list == nullptr || CFGetTypeID(list) != CFArrayGetTypeID()) return {};
  const auto array = static_cast<CFArrayRef>(list);
  return CFArrayGetCount(array) == 0 ? "" : text(CFArrayGetValueAtIndex(array, 0));
}

int languages(const std::string& assumption) {
  const std::string preferred = first(CFLocaleCopyPreferredLanguages());
  const std::string chosen =
      first(CFPreferencesCopyAppValue(CFSTR("AppleLanguages"), kCFPreferencesAnyApplication));
  if (chosen.empty()) return probe::notShown(assumption, "the user's list cannot be read");
  return probe::answer(assumption, probe::verdictOf(preferred == chosen),
                       Evidence().add("first language", preferred).add("the user's", chosen));
}

int names(const std::string& assumption) {
  NSString* full = NSFullUserName();
  NSPersonNameComponentsFormatter* parser = [[NSPersonNameComponentsFormatter alloc] init];
  const NSUInteger own = [parser personNameComponentsFromString:full].givenName.length;
  NSString* given = [parser personNameComponentsFromString:@"Ada Lovelace"].givenName;
  const std::string found = given == nil ? "" : given.UTF8String;
  return probe::answer(assumption, probe::verdictOf(full.length > 0 && found == "Ada"),
                       Evidence()
                           .add("length of the full name", static_cast<long long>(full.length))
                           .add("length of its given name", static_cast<long long>(own))
                           .add("given name of Ada Lovelace", found));
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    if (assumption == "preferred-languages") return languages(assumption);
    if (assumption == "user-names") return names(assumption);
    return probe::notShown(assumption, "it is not asked here");
  }
}
